// One row of seven knob panels, scrolling sideways on its own when the window
// is narrower than the row.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Dialcraft

Flickable {
    id: row

    required property int rowIndex
    required property ContentView contentView
    readonly property int panelsPerRow: 7

    objectName: "knobRow" + rowIndex
    implicitWidth: panels.implicitWidth
    implicitHeight: panels.implicitHeight + scrollBar.implicitHeight
    contentWidth: panels.implicitWidth
    contentHeight: height
    flickableDirection: Flickable.HorizontalFlick
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    // Shown exactly while the row is wider than its room, without the
    // style's fade, so the first frame is already clean.
    ScrollBar.horizontal: ScrollBar {
        id: scrollBar
        objectName: "scrollIndicator"
        policy: ScrollBar.AlwaysOn
        visible: row.contentWidth > row.width
    }

    Row {
        id: panels
        padding: 8
        spacing: 8

        Repeater {
            model: row.panelsPerRow
            CreateSetupAreaView {
                required property int index
                displayPosition: row.rowIndex * row.panelsPerRow + index
                record: row.contentView.globalState.record(row.contentView.customOrderIndices[displayPosition])
                globalState: row.contentView.globalState
            }
        }
    }
}
