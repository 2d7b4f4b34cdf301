// The live monitor under the knob rows: what the family's controllers send,
// one line a message, the last 200 kept. Collapsed until opened, and its
// open parts made at the first opening (MonitorButtons, MonitorMessages). Pause
// stops the list, never the counting; Clear empties it.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

ColumnLayout {
    id: pane

    required property GlobalState globalState
    readonly property KnobMonitor monitor: StatusBoard.of(globalState).monitor
    property bool open: false

    objectName: "monitorPane"
    spacing: 4

    RowLayout {
        Button {
            id: toggle
            objectName: "monitorToggle"
            // Triangles the CJK face has: no fallback font for the first frame.
            text: (pane.open ? "▼ " : "▶ ") + "监视器(Monitor)"
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
        // Pause and Clear, made at the first opening.
        PartOnDemand {
            needed: pane.open
            part: Qt.resolvedUrl("MonitorButtons.qml")
            settings: ({ monitor: pane.monitor })
        }
    }

    // The newest line, the list and its handle, made at the first opening.
    PartOnDemand {
        objectName: "monitorMessages"
        Layout.fillWidth: true
        needed: pane.open
        part: Qt.resolvedUrl("MonitorMessages.qml")
        settings: ({ monitor: pane.monitor })
    }
}
