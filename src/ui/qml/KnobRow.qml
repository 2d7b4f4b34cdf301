// One row of seven knob panels, scrolling sideways on its own when the window
// is narrower than the row: by dragging, by its scroll bar, by a sideways
// wheel or swipe, and by Shift with the ordinary wheel. The ordinary wheel
// alone is left to the window, which scrolls vertically.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Dialcraft

Flickable {
    id: row

    required property int rowIndex
    required property ContentView contentView
    readonly property int panelsPerRow: 7
    // The row's width when it shows its widest panel whole: below it no
    // panel could be read in full.
    readonly property real minimumUsefulWidth: {
        let widest = 0
        for (let i = 0; i < panelRepeater.count; ++i) {
            const panel = panelRepeater.itemAt(i)
            if (panel)
                widest = Math.max(widest, panel.implicitWidth)
        }
        return widest + panels.leftPadding + panels.rightPadding
    }

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
        Accessible.name: "第" + (row.rowIndex + 1) + "行旋钮(Knob row " + (row.rowIndex + 1) + ")"
        policy: ScrollBar.AlwaysOn
        visible: row.contentWidth > row.width
    }

    // Moves the row sideways by `pixels` (positive: towards its end), never
    // past either end.
    function scrollSideways(pixels: real) {
        row.contentX = Math.max(0, Math.min(row.contentWidth - row.width, row.contentX + pixels))
    }

    WheelHandler {
        objectName: "sidewaysWheel"
        target: null
        acceptedModifiers: Qt.ShiftModifier
        // One notch (120 eighths of a degree) moves about half a panel.
        onWheel: event => {
            const notches = (event.angleDelta.y !== 0 ? event.angleDelta.y : event.angleDelta.x) / 120
            row.scrollSideways(-notches * 80)
        }
    }

    Row {
        id: panels
        padding: 8
        spacing: 8

        Repeater {
            id: panelRepeater
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
