// A high-contrast frame drawn just outside its parent while `shown` is true,
// so the control that has the keyboard focus stands out clearly on the light
// window background and on the yellow set buttons alike. The window's one
// focus frame (FocusFrame) places it around the focused control; the
// overwrite question's buttons, in a popup above that frame, carry their own.
import QtQuick

Rectangle {
    property bool shown: false

    objectName: "focusRing"
    anchors.fill: parent
    anchors.margins: -3
    visible: shown
    color: "transparent"
    border.width: 3
    border.color: "#0033cc"
    radius: 5
}
