// The window's top bar: the import and export buttons, which raise the file
// dialogs, and the set-all button.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

ToolBar {
    id: bar

    required property GlobalState globalState
    required property FileDialogsOnDemand dialogs
    // A set-all run is going on: the other buttons are off.
    readonly property bool busy: StatusBoard.of(globalState).busy

    objectName: "toolBar"

    RowLayout {
        anchors.fill: parent
        ToolButton {
            id: importButton
            objectName: "importButton"
            text: "导入配置(Import Config)"
            Accessible.name: importButton.text
            hoverEnabled: true
            enabled: !bar.busy
            PressGlue {
                button: importButton
                onActivated: bar.dialogs.importButtonPressed()
            }
            FocusFrame.shown: importButton.visualFocus
        }
        ToolButton {
            id: exportButton
            objectName: "exportButton"
            text: "导出配置(Export Config)"
            Accessible.name: exportButton.text
            hoverEnabled: true
            enabled: !bar.busy
            PressGlue {
                button: exportButton
                onActivated: bar.dialogs.exportButtonPressed()
            }
            FocusFrame.shown: exportButton.visualFocus
        }
        SetAllButton {
            globalState: bar.globalState
        }
        OnlyChangedBox {
            globalState: bar.globalState
        }
        Item { Layout.fillWidth: true }
    }
}
