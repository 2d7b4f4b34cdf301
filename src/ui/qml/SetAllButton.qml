// The top bar's third button: presses the set button of every working knob
// in display order; while that runs it is the stop button, and the run ends
// after the knob being set.
import QtQuick
import QtQuick.Controls
import Dialcraft

ToolButton {
    id: button

    required property GlobalState globalState
    readonly property SetAllRun run: StatusBoard.of(globalState).setAll

    objectName: "setAllButton"
    text: run.running ? "停止(Stop)" : "全部设置(Set All)"
    focusPolicy: Qt.StrongFocus
    activeFocusOnTab: true
    Accessible.name: text
    onClicked: button.toggle()
    // Space is the button's own key; Return and Enter act the same.
    Keys.onReturnPressed: button.toggle()
    Keys.onEnterPressed: button.toggle()

    function toggle() {
        if (run.running)
            run.stop()
        else
            run.start(button.Window.window)
    }

    FocusFrame.shown: button.visualFocus
}
