// The down arrow at the end of a menu. The style's own arrow is an image
// recoloured from its file, through the engine's file selectors, every time
// its menu turns enabled or disabled; greying the window for a set-all run
// paid that for every knob's menu. This arrow keeps its colour and only fades
// while its menu is disabled. "▼" at a small size, not "▾": the CJK face has
// it, so no fallback font is opened for it.
import QtQuick
import QtQuick.Controls

Text {
    required property ComboBox menu

    objectName: "menuArrow"
    x: menu.mirrored ? menu.padding : menu.width - width - menu.padding
    y: menu.topPadding + (menu.availableHeight - height) / 2
    width: 20
    horizontalAlignment: Text.AlignHCenter
    text: "\u25BC"
    font.pixelSize: 7
    color: menu.palette.active.buttonText
    opacity: menu.enabled ? 1 : 0.4
    Accessible.ignored: true
}
