// The floor's window: 28 knob panels in four rows of seven beside a column
// with the model menu and a text area, as plain Qt Quick Controls. Its size
// is the one the tool's window takes from its content here.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

ApplicationWindow {
    visible: true
    width: 1359
    height: 769

    RowLayout {
        anchors.fill: parent

        ColumnLayout {
            Layout.alignment: Qt.AlignTop
            Repeater {
                model: 4
                Row {
                    id: knobRow
                    required property int index
                    padding: 8
                    spacing: 8
                    Repeater {
                        model: 7
                        ColumnLayout {
                            id: panel
                            required property int index
                            spacing: 5
                            Label {
                                Layout.alignment: Qt.AlignHCenter
                                text: (knobRow.index * 7 + panel.index) + "号旋钮"
                            }
                            Button {
                                Layout.alignment: Qt.AlignHCenter
                                text: "设置"
                            }
                            ComboBox {
                                Layout.preferredWidth: 130
                                model: ["Note On", "Note Off", "Control Change", "Bend Change", "选择消息类型"]
                            }
                            RowLayout {
                                TextField {
                                    Layout.preferredWidth: 65
                                    placeholderText: "MIDI通道"
                                }
                                TextField {
                                    Layout.preferredWidth: 65
                                    placeholderText: "控制器号"
                                }
                            }
                        }
                    }
                }
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            ComboBox {
                Layout.preferredWidth: 130
                model: ["4AC0CC27", "4AC1CC27", "4ACBCC27", "4ACFCC27"]
            }
            TextArea {
                Layout.fillWidth: true
                Layout.fillHeight: true
                readOnly: true
                text: "请选择设备型号(Choose the machine serial)"
            }
        }
    }
}
