// The tool's one window: four rows of knob panels beside the device column,
// the import and export buttons in the window's top bar. The window takes its
// size from its content.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

ApplicationWindow {
    id: window

    visible: true
    width: mainView.implicitWidth
    height: mainView.implicitHeight + (header ? header.implicitHeight : 0)
    header: configArea.toolBar

    ContentView {
        id: mainView
        objectName: "contentView"
        anchors.fill: parent
        implicitWidth: root.implicitWidth
        implicitHeight: root.implicitHeight

        RowLayout {
            id: root
            anchors.fill: parent

            ColumnLayout {
                objectName: "knobRows"
                enabled: !StatusBoard.of(mainView.globalState).busy
                Layout.fillWidth: true
                Layout.minimumWidth: 0

                Repeater {
                    model: 4
                    KnobRow {
                        required property int index
                        rowIndex: index
                        contentView: mainView
                        Layout.fillWidth: true
                        Layout.minimumWidth: 0
                    }
                }
            }

            CreateConfigAreaView {
                id: configArea
                record: mainView.globalState.ConfigAreaData
                globalState: mainView.globalState
            }
        }
    }
}
