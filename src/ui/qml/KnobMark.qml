// A knob panel's ledger marker: whether the controller chosen in the model
// menu holds what the panel shows. A symbol and a word, so it reads without
// colour.
import QtQuick

// A plain text rather than a styled label: one of these is in each panel of
// the first frame.
Text {
    // 0 written, 1 differs, 2 never written; anything else shows nothing.
    required property int marker

    readonly property string markerText: ["✓ 已写入(written)", "≠ 与控制器不同(differs)",
        "○ 未写入(never written)"][marker] ?? ""

    objectName: "knobMark"
    text: markerText
    visible: markerText !== ""
    font.pixelSize: 11
    color: marker === 0 ? "#1b6e20" : marker === 1 ? "#a04000" : "#555555"
    Accessible.role: Accessible.StaticText
    Accessible.name: markerText
}
