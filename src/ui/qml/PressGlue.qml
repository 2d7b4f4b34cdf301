// Makes every way of pressing a button run its action once: a click (the
// pointer, or Space on the focused button), a screen reader's press action,
// and Return or Enter on the focused button. Put it inside the button and
// handle onActivated.
import QtQuick

QtObject {
    id: glue

    // A Qt Quick Controls button. Typed as Item: Qt 6.4's qmllint does not
    // see that the styled Button and ToolButton are AbstractButtons.
    required property Item button

    signal activated()

    property Connections clicks: Connections {
        target: glue.button
        function onClicked() { glue.activated() }
    }
    property Connections screenReader: Connections {
        target: glue.button.Accessible
        function onPressAction() { glue.activated() }
    }
    property Connections keys: Connections {
        target: glue.button.Keys
        function onReturnPressed() { glue.activated() }
        function onEnterPressed() { glue.activated() }
    }
}
