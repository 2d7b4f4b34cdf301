// A knob panel's live activity, from the monitor: the last value the knob
// sent, lit for a moment while messages come, and whether the controller was
// seen sending the knob's new setting since it was programmed. Symbols and
// words, so it reads without colour; lit, it is led by "◉" in a deeper blue.
// A plain text rather than a styled label: one of these is in each panel of
// the first frame.
import QtQuick

Text {
    // -1 while the knob has sent nothing.
    required property int lastValue
    required property bool lit
    required property bool verified

    readonly property string valueText: lastValue < 0 ? "" : "值(value) " + lastValue
    readonly property string verifiedText: verified ? "✓ 已验证(verified)" : ""
    readonly property string activityText: verifiedText !== "" && valueText !== ""
        ? verifiedText + " · " + valueText : verifiedText + valueText

    objectName: "knobActivity"
    text: (lit ? "◉ " : "") + activityText
    visible: activityText !== ""
    font.pixelSize: 11
    color: lit ? "#0b4f9c" : "#333333"
    Accessible.role: Accessible.StaticText
    Accessible.name: activityText
}
