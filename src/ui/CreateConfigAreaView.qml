// The device column beside the knob rows: the model menu and the read-only
// text area in which the tool writes instructions and results. It also
// provides the window's top bar with the import and export buttons and the
// two plain-text file dialogs they raise.
import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import Dialcraft

RowLayout {
    id: area

    required property CreateConfigAreaViewData record
    required property GlobalState globalState

    // Placed by the window as its top bar.
    property ToolBar toolBar: ToolBar {
        objectName: "toolBar"
        RowLayout {
            anchors.fill: parent
            ToolButton {
                objectName: "importButton"
                text: "导入配置(Import Config)"
                onClicked: transfer.importButtonPressed()
            }
            ToolButton {
                objectName: "exportButton"
                text: "导出配置(Export Config)"
                onClicked: transfer.exportButtonPressed()
            }
            Item { Layout.fillWidth: true }
        }
    }

    ConfigFileTransfer {
        id: transfer
        objectName: "fileTransfer"
        globalState: area.globalState
    }

    // Each dialog is shown while its flag is raised; the flag drops when the
    // dialog closes, however it closes.
    FileDialog {
        objectName: "openDialog"
        fileMode: FileDialog.OpenFile
        nameFilters: ["Text files (*.txt)"]
        visible: transfer.importing
        onVisibleChanged: if (!visible) transfer.importing = false
        onAccepted: transfer.importCompleted(DialogFiles.chosenFile(selectedFile))
        onRejected: transfer.dialogCancelled()
    }
    FileDialog {
        objectName: "saveDialog"
        fileMode: FileDialog.SaveFile
        nameFilters: ["Text files (*.txt)"]
        visible: transfer.exporting
        onVisibleChanged: if (!visible) transfer.exporting = false
        onAccepted: transfer.exportCompleted(DialogFiles.chosenFile(selectedFile))
        onRejected: transfer.dialogCancelled()
    }

    // The empty, flexible column that carries the top bar.
    Item {
        Layout.fillWidth: true
    }

    ColumnLayout {
        objectName: "deviceColumn"
        Layout.rightMargin: 8

        SymbolLabel {
            Layout.preferredWidth: 220
            symbol: "\u2744"
            text: "设备型号(Machine Serial)"
        }

        ComboBox {
            objectName: "modelMenu"
            Layout.preferredWidth: 130
            Layout.margins: 5
            model: Vocabulary.machineTypes
            displayText: area.globalState.machine_type_menu_string
            // Qt 6.4's qmllint types a string list property as a bare QStringList and
            // misses the JavaScript array methods QML gives it, so it reports indexOf
            // as unknown; the directive silences that check on this line only.
            currentIndex: Vocabulary.machineTypes.indexOf(area.globalState.machine_type_menu_string) // qmllint disable type
            onActivated: index => area.globalState.machine_type_menu_string = Vocabulary.machineTypes[index]
        }

        // Always disabled: it only shows what the tool writes, and can take
        // neither focus nor input. The frame scrolls when the text is long.
        ScrollView {
            id: textFrame
            objectName: "textAreaFrame"
            Layout.preferredWidth: 200
            Layout.preferredHeight: 200
            ScrollBar.vertical.policy: ScrollBar.AlwaysOn
            ScrollBar.vertical.visible: textFrame.contentHeight > textFrame.availableHeight
            background: Rectangle {
                color: "white"
                border.color: "black"
                border.width: 1
            }
            TextArea {
                objectName: "textArea"
                text: area.globalState.fullText
                readOnly: true
                enabled: false
                activeFocusOnTab: false
                activeFocusOnPress: false
                wrapMode: TextEdit.Wrap
                color: "black"
                font.pixelSize: 16
                background: null
            }
        }
    }
}
