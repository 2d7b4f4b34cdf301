// A label led by a small symbol glyph, drawn as one text in the label's own
// colour: about a hundred of these are in the first frame, and a second item
// or styled text for each costs the start half a megabyte. Screen readers
// read only the caption.
import QtQuick

Text {
    property string symbol
    property string caption

    text: symbol + " " + caption
    Accessible.name: caption
}
