// The device column beside the knob rows: the model menu and the read-only
// text area in which the tool writes instructions and results. It also
// provides the window's top bar with the import and export buttons and the
// two plain-text file dialogs they raise. Both dialogs start in the user's
// documents folder and are the desktop's own where it offers them; Qt's own
// save dialog, the fallback, is made to take a typed name at once and to ask
// before replacing a file.
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
                id: importButton
                objectName: "importButton"
                text: "导入配置(Import Config)"
                Accessible.name: importButton.text
                hoverEnabled: true
                enabled: !area.busy
                onClicked: transfer.importButtonPressed()
                Accessible.onPressAction: transfer.importButtonPressed()
                Keys.onReturnPressed: transfer.importButtonPressed()
                Keys.onEnterPressed: transfer.importButtonPressed()
                FocusRing {
                    shown: importButton.visualFocus
                }
            }
            ToolButton {
                id: exportButton
                objectName: "exportButton"
                text: "导出配置(Export Config)"
                Accessible.name: exportButton.text
                hoverEnabled: true
                enabled: !area.busy
                onClicked: transfer.exportButtonPressed()
                Accessible.onPressAction: transfer.exportButtonPressed()
                Keys.onReturnPressed: transfer.exportButtonPressed()
                Keys.onEnterPressed: transfer.exportButtonPressed()
                FocusRing {
                    shown: exportButton.visualFocus
                }
            }
            SetAllButton {
                globalState: area.globalState
            }
            Item { Layout.fillWidth: true }
        }
    }

    // A screen reader learns of every new message in the text area.
    TextChangeAnnouncer {
        target: textArea
        text: area.globalState.fullText
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
        currentFolder: DialogFiles.documentsFolder
        nameFilters: ["Text files (*.txt)"]
        visible: transfer.importing
        onVisibleChanged: if (!visible) transfer.importing = false
        onAccepted: transfer.importCompleted(DialogFiles.chosenFile(selectedFile))
        onRejected: transfer.dialogCancelled()
    }
    FileDialog {
        id: saveDialog
        objectName: "saveDialog"
        fileMode: FileDialog.SaveFile
        acceptLabel: "保存(Save)"
        currentFolder: DialogFiles.documentsFolder
        nameFilters: ["Text files (*.txt)"]
        visible: transfer.exporting
        onVisibleChanged: if (!visible) transfer.exporting = false
        onAccepted: {
            if (saveFallback.mustConfirmOverwrite(selectedFile)) {
                overwriteQuestion.file = selectedFile
                overwriteQuestion.fileName = DialogFiles.shownPath(selectedFile)
                overwriteQuestion.open()
            } else {
                transfer.exportCompleted(DialogFiles.chosenFile(selectedFile))
            }
        }
        onRejected: transfer.dialogCancelled()
    }
    SaveDialogFallback {
        id: saveFallback
        objectName: "saveDialogFallback"
        dialog: saveDialog
    }
    OverwriteQuestion {
        id: overwriteQuestion
        onAccepted: transfer.exportCompleted(DialogFiles.chosenFile(overwriteQuestion.file))
        onRejected: transfer.exporting = true
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
            id: modelMenu
            objectName: "modelMenu"
            enabled: !area.busy
            Layout.preferredWidth: 130
            Layout.margins: 5
            Accessible.name: "设备型号(Machine Serial): " + displayText
            model: Vocabulary.machineTypes
            displayText: area.globalState.machine_type_menu_string
            // Qt 6.4's qmllint types a string list property as a bare QStringList and
            // misses the JavaScript array methods QML gives it, so it reports indexOf
            // as unknown; the directive silences that check on this line only.
            currentIndex: Vocabulary.machineTypes.indexOf(area.globalState.machine_type_menu_string) // qmllint disable type
            onActivated: index => area.globalState.machine_type_menu_string = Vocabulary.machineTypes[index]
            indicator: MenuArrow {
                menu: modelMenu
            }

            FocusRing {
                shown: modelMenu.visualFocus
            }
        }

        // Always disabled: it only shows what the tool writes, and can take
        // neither focus nor input. The frame scrolls when the text is long;
        // the frame, not the text, is a Tab stop, on which the arrow keys,
        // Page Up/Down, Home and End scroll the text, and which a screen
        // reader announces with the text it shows.
        ScrollView {
            id: textFrame
            objectName: "textAreaFrame"
            Layout.preferredWidth: 200
            Layout.preferredHeight: 200
            // The style's own bars, placed as it places them, with names for
            // screen readers. The text wraps, so only the vertical one shows.
            ScrollBar.vertical: ScrollBar {
                parent: textFrame
                x: textFrame.mirrored ? 0 : textFrame.width - width
                y: textFrame.topPadding
                height: textFrame.availableHeight
                policy: ScrollBar.AlwaysOn
                visible: textFrame.contentHeight > textFrame.availableHeight
                Accessible.name: "信息(Messages)"
            }
            ScrollBar.horizontal: ScrollBar {
                parent: textFrame
                x: textFrame.leftPadding
                y: textFrame.height - height
                width: textFrame.availableWidth
                policy: ScrollBar.AlwaysOff
                Accessible.name: "信息(Messages)"
            }
            focusPolicy: Qt.TabFocus
            Accessible.role: Accessible.Pane
            Accessible.name: "信息(Messages)"
            Accessible.description: area.globalState.fullText
            Keys.onUpPressed: textFrame.ScrollBar.vertical.decrease()
            Keys.onDownPressed: textFrame.ScrollBar.vertical.increase()
            Keys.onPressed: event => {
                const bar = textFrame.ScrollBar.vertical
                const end = 1 - bar.size
                if (event.key === Qt.Key_PageUp)
                    bar.position = Math.max(0, bar.position - bar.size)
                else if (event.key === Qt.Key_PageDown)
                    bar.position = Math.min(end, bar.position + bar.size)
                else if (event.key === Qt.Key_Home)
                    bar.position = 0
                else if (event.key === Qt.Key_End)
                    bar.position = end
                else
                    return
                event.accepted = true
            }

            background: Rectangle {
                color: "white"
                border.color: "black"
                border.width: 1

                FocusRing {
                    shown: textFrame.activeFocus
                }
            }
            TextArea {
                id: textArea
                objectName: "textArea"
                Accessible.name: "信息(Messages)"
                Accessible.readOnly: true
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
