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
    // A set-all run is going on: the menu and the other buttons are off.
    readonly property bool busy: StatusBoard.of(globalState).busy

    // Placed by the window as its top bar.
    property ToolBar toolBar: ToolBar {
        objectName: "toolBar"
        RowLayout {
            anchors.fill: parent
            ToolButton {
                objectName: "importButton"
                text: "导入配置(Import Config)"
                enabled: !area.busy
                onClicked: transfer.importButtonPressed()
            }
            ToolButton {
                objectName: "exportButton"
                text: "导出配置(Export Config)"
                enabled: !area.busy
                onClicked: transfer.exportButtonPressed()
            }
            SetAllButton {
                globalState: area.globalState
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
            enabled: !area.busy
            Layout.preferredWidth: 130
            Layout.margins: 5
            model: Vocabulary.machineTypes
            displayText: area.globalState.machine_type_menu_string
            currentIndex: Vocabulary.machineTypes.indexOf(area.globalState.machine_type_menu_string)
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

        StatusLine {
            Layout.preferredWidth: 200
            globalState: area.globalState
            transfer: transfer
        }
    }
}
