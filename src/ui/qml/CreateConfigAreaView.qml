// The device and file panel: the two children it gives the window's root row
// (an empty, flexible column, then the device column), the window's top bar
// with the import and export buttons, and the file dialogs those raise, made
// on the first press.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

RowLayout {
    id: area

    required property CreateConfigAreaViewData record
    required property GlobalState globalState

    // Placed by the window as its top bar.
    property ToolBar toolBar: TopBar {
        globalState: area.globalState
        dialogs: dialogs
    }

    FileDialogsOnDemand {
        id: dialogs
        globalState: area.globalState
        host: area
    }

    // The empty column that carries the top bar; the room a large window
    // gives goes to the device column instead.
    Item {
        Layout.fillWidth: false
    }

    DeviceColumn {
        Layout.fillWidth: true
        Layout.fillHeight: true
        globalState: area.globalState
        // Nothing to report before the first import or export.
        transfer: dialogs.flow ? dialogs.flow.transfer : null
    }
}
