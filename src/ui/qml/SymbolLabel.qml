// A label led by a small symbol glyph. The glyph is decoration only and is
// hidden from assistive technology; the caption is read as it stands.
import QtQuick
import QtQuick.Controls

Row {
    id: label

    property string symbol
    property string text
    property alias font: caption.font

    spacing: 4

    Label {
        objectName: "symbol"
        Accessible.ignored: true
        text: label.symbol
        color: palette.highlight
        font: caption.font
        anchors.verticalCenter: parent.verticalCenter
    }
    Label {
        id: caption
        objectName: "caption"
        text: label.text
        anchors.verticalCenter: parent.verticalCenter
    }
}
