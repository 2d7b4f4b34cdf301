// The tool's one window: four rows of knob panels beside the device column,
// the import and export buttons in the window's top bar. The window takes its
// size from its content. It can be made smaller down to a minimum at which one
// whole knob panel of each row and the whole device column stay legible;
// below its content's height it scrolls vertically, and each row scrolls
// sideways on its own. The keyboard focus is always kept in view.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

ApplicationWindow {
    id: window

    visible: true
    width: mainView.implicitWidth
    height: mainView.implicitHeight + (header ? header.implicitHeight : 0)
    minimumWidth: configArea.implicitWidth + root.spacing + firstRow.minimumUsefulWidth + pageScrollBar.width
    minimumHeight: (header ? header.implicitHeight : 0) + Math.max(firstRow.implicitHeight, configArea.implicitHeight)
    header: configArea.toolBar

    FocusIntoView {
        window: window
    }

    // The one focus frame, drawn around whichever control has the focus and
    // asks for it (FocusFrame.shown).
    FocusFrame {
        id: focusFrame
        objectName: "focusFrame"
        Item {
            x: focusFrame.framedRect.x
            y: focusFrame.framedRect.y
            width: focusFrame.framedRect.width
            height: focusFrame.framedRect.height
            FocusRing {
                shown: focusFrame.shown
                radius: focusFrame.radius
            }
        }
    }

    ContentView {
        id: mainView
        objectName: "contentView"
        anchors.fill: parent
        implicitWidth: root.implicitWidth
        implicitHeight: root.implicitHeight

        Flickable {
            id: page
            objectName: "pageScroller"
            anchors.fill: parent
            contentWidth: width
            contentHeight: Math.max(height, root.implicitHeight)
            flickableDirection: Flickable.VerticalFlick
            boundsBehavior: Flickable.StopAtBounds
            clip: true

            ScrollBar.vertical: ScrollBar {
                id: pageScrollBar
                objectName: "pageScrollBar"
                Accessible.name: "窗口(Window)"
                policy: ScrollBar.AlwaysOn
                visible: page.contentHeight > page.height
            }

            RowLayout {
                id: root
                width: page.width - (pageScrollBar.visible ? pageScrollBar.width : 0)
                height: page.contentHeight

                ColumnLayout {
                    objectName: "knobRows"
                    Layout.fillWidth: true
                    Layout.minimumWidth: 0
                    // Never wider than the rows' panels: a large window's
                    // extra room goes to the device column beside them, so
                    // the column stays next to the grid and its text grows.
                    Layout.maximumWidth: firstRow.implicitWidth
                    Layout.alignment: Qt.AlignTop

                    KnobRow {
                        id: firstRow
                        rowIndex: 0
                        contentView: mainView
                        Layout.fillWidth: true
                        Layout.minimumWidth: 0
                    }
                    Repeater {
                        model: 3
                        KnobRow {
                            required property int index
                            rowIndex: index + 1
                            contentView: mainView
                            Layout.fillWidth: true
                            Layout.minimumWidth: 0
                        }
                    }
                    MonitorPane {
                        globalState: mainView.globalState
                        Layout.fillWidth: true
                        Layout.minimumWidth: 0
                    }
                }

                CreateConfigAreaView {
                    id: configArea
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    // As tall as the window shows at most, so its text area
                    // grows with a tall window yet the column stays in view.
                    Layout.maximumHeight: page.height
                    Layout.alignment: Qt.AlignTop
                    record: mainView.globalState.ConfigAreaData
                    globalState: mainView.globalState
                }
            }
        }
    }
}
