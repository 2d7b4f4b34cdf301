// The live monitor under the knob rows: what the family's controllers send,
// one line a message, the last 200 kept. Collapsed until opened; the list's
// height follows its handle (drag it, or Up and Down on it). Pause stops the
// list, never the counting; Clear empties it.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

ColumnLayout {
    id: pane

    required property GlobalState globalState
    readonly property KnobMonitor monitor: StatusBoard.of(globalState).monitor
    property bool open: false
    property int listHeight: 160

    objectName: "monitorPane"
    spacing: 4

    RowLayout {
        Button {
            id: toggle
            objectName: "monitorToggle"
            text: (pane.open ? "▾ " : "▸ ") + "监视器(Monitor)"
            focusPolicy: Qt.StrongFocus
            Accessible.name: "监视器(Monitor)" + (pane.open ? " 已展开(expanded)" : " 已收起(collapsed)")
            PressGlue {
                button: toggle
                onActivated: pane.open = !pane.open
            }
            FocusFrame.shown: toggle.visualFocus
        }
        Label {
            objectName: "monitorCounts"
            text: pane.monitor.countsText
            font.pixelSize: 12
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Button {
            id: pause
            objectName: "monitorPause"
            visible: pane.open
            text: pane.monitor.paused ? "继续(Resume)" : "暂停(Pause)"
            focusPolicy: Qt.StrongFocus
            Accessible.name: text
            PressGlue {
                button: pause
                onActivated: pane.monitor.paused = !pane.monitor.paused
            }
            FocusFrame.shown: pause.visualFocus
        }
        Button {
            id: clear
            objectName: "monitorClear"
            visible: pane.open
            text: "清除(Clear)"
            focusPolicy: Qt.StrongFocus
            Accessible.name: text
            PressGlue {
                button: clear
                onActivated: pane.monitor.clear()
            }
            FocusFrame.shown: clear.visualFocus
        }
    }

    // The newest line, once a second at most: what a screen reader is told.
    TextArea {
        id: latest
        objectName: "monitorLatest"
        visible: pane.open
        Layout.fillWidth: true
        readOnly: true
        activeFocusOnTab: false
        text: pane.monitor.latest
        font.family: "monospace"
        font.pixelSize: 12
        background: null
        Accessible.name: "最新消息(Latest message)"
        Accessible.readOnly: true
        TextChangeAnnouncer {
            target: latest
            text: pane.monitor.latest
        }
    }

    ListView {
        id: list
        objectName: "monitorList"
        visible: pane.open
        Layout.fillWidth: true
        Layout.preferredHeight: pane.listHeight
        clip: true
        model: pane.monitor.log
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
        visible: pane.open
        Layout.fillWidth: true
        Layout.preferredHeight: 8
        color: handle.activeFocus ? "#7aa7e0" : "#cccccc"
        activeFocusOnTab: true
        Accessible.role: Accessible.Separator
        Accessible.name: "监视器高度(Monitor height): " + pane.listHeight
        Keys.onUpPressed: pane.listHeight = Math.max(60, pane.listHeight - 20)
        Keys.onDownPressed: pane.listHeight = Math.min(600, pane.listHeight + 20)
        DragHandler {
            target: null
            yAxis.enabled: true
            xAxis.enabled: false
            property int startHeight: 0
            onActiveChanged: if (active) startHeight = pane.listHeight
            onTranslationChanged: pane.listHeight = Math.max(60, Math.min(600, startHeight + translation.y))
        }
    }
}
