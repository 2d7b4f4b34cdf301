// The open monitor's newest line, its list of messages and the list's
// handle. The list's height follows the handle (drag it, or Up and Down on
// it).
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

ColumnLayout {
    id: messages

    required property KnobMonitor monitor
    property int listHeight: 160

    spacing: 4

    // The newest line, once a second at most: what a screen reader is told.
    TextArea {
        id: latest
        objectName: "monitorLatest"
        Layout.fillWidth: true
        readOnly: true
        activeFocusOnTab: false
        text: messages.monitor.latest
        font.family: "monospace"
        font.pixelSize: 12
        background: null
        Accessible.name: "最新消息(Latest message)"
        Accessible.readOnly: true
        TextChangeAnnouncer {
            target: latest
            text: messages.monitor.latest
        }
    }

    ListView {
        id: list
        objectName: "monitorList"
        Layout.fillWidth: true
        Layout.preferredHeight: messages.listHeight
        clip: true
        model: messages.monitor.log
        activeFocusOnTab: true
        keyNavigationEnabled: true
        Accessible.role: Accessible.List
        Accessible.name: "监视器消息(Monitor messages)"
        // The newest line stays in view unless the user scrolled up.
        onCountChanged: if (atYEnd || !moving) positionViewAtEnd()
        ScrollBar.vertical: ScrollBar {
            Accessible.name: "监视器消息(Monitor messages)"
        }
        delegate: Label {
            required property string line
            required property bool matched
            width: ListView.view.width
            leftPadding: 4
            text: line
            font.family: "monospace"
            font.pixelSize: 12
            color: matched ? "black" : "#666666"
            Accessible.role: Accessible.ListItem
            Accessible.name: line
        }
        Rectangle {
            anchors.fill: parent
            color: "transparent"
            border.color: "#999999"
            FocusFrame.shown: list.activeFocus
        }
    }

    // The list's lower edge: drag it, or Up and Down when it has focus.
    Rectangle {
        id: handle
        objectName: "monitorResize"
        Layout.fillWidth: true
        Layout.preferredHeight: 8
        color: handle.activeFocus ? "#7aa7e0" : "#cccccc"
        activeFocusOnTab: true
        Accessible.role: Accessible.Separator
        Accessible.name: "监视器高度(Monitor height): " + messages.listHeight
        Keys.onUpPressed: messages.listHeight = Math.max(60, messages.listHeight - 20)
        Keys.onDownPressed: messages.listHeight = Math.min(600, messages.listHeight + 20)
        DragHandler {
            target: null
            yAxis.enabled: true
            xAxis.enabled: false
            property int startHeight: 0
            onActiveChanged: if (active) startHeight = messages.listHeight
            onTranslationChanged: messages.listHeight = Math.max(60, Math.min(600, startHeight + translation.y))
        }
    }
}
