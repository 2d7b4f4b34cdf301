// The open monitor's pause and clear buttons, beside its toggle and counts.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

RowLayout {
    id: buttons

    required property KnobMonitor monitor

    Button {
        id: pause
        objectName: "monitorPause"
        text: buttons.monitor.paused ? "继续(Resume)" : "暂停(Pause)"
        focusPolicy: Qt.StrongFocus
        Accessible.name: text
        PressGlue {
            button: pause
            onActivated: buttons.monitor.paused = !buttons.monitor.paused
        }
        FocusFrame.shown: pause.visualFocus
    }
    Button {
        id: clear
        objectName: "monitorClear"
        text: "清除(Clear)"
        focusPolicy: Qt.StrongFocus
        Accessible.name: text
        PressGlue {
            button: clear
            onActivated: buttons.monitor.clear()
        }
        FocusFrame.shown: clear.visualFocus
    }
}
