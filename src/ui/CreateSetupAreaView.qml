// The panel of one knob: its number and set button, the message-type menu,
// the channel and controller fields with their range hints. It edits its
// record in place and checks nothing; the set action reports through the
// shared text. Record 27 is the inert, dimmed placeholder.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

Control {
    id: panel

    required property int displayPosition
    required property CreateSetupAreaViewData record
    required property GlobalState globalState
    readonly property bool placeholder: record.knob_index === 27

    // Declared for a result message and alert that the panel never presents:
    // results are only ever shown in the device column's text area.
    property string showmessage
    property string showmessage_title
    property bool showAlert: false

    objectName: "knobPanel"
    padding: 8
    opacity: placeholder ? 0.5 : 1.0

    SetButtonAction {
        id: setAction
        data: panel.record
        globalState: panel.globalState
    }

    contentItem: ColumnLayout {
        spacing: 5

        RowLayout {
            Layout.alignment: Qt.AlignHCenter
            SymbolLabel {
                objectName: "knobLabel"
                symbol: "\u2744"
                text: panel.record.knob_index + "号旋钮"
            }
            Button {
                objectName: "setButton"
                enabled: !panel.placeholder
                padding: 1
                leftPadding: 8
                rightPadding: 8
                focusPolicy: Qt.NoFocus
                contentItem: Text {
                    text: "设置"
                    color: "black"
                    font.pixelSize: 17
                    font.weight: Font.DemiBold
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                }
                background: Rectangle {
                    color: "yellow"
                    radius: 10
                }
                onClicked: setAction.press()
            }
        }

        ComboBox {
            objectName: "typeMenu"
            Layout.alignment: Qt.AlignHCenter
            Layout.preferredWidth: 130
            enabled: !panel.placeholder
            model: Vocabulary.messageTypeMenuItems
            displayText: panel.record.message_type_menu_string
            // Qt 6.4's qmllint types a string list property as a bare QStringList and
            // misses the JavaScript array methods QML gives it, so it reports indexOf
            // as unknown; the directive silences that check on this line only.
            currentIndex: Vocabulary.messageTypeMenuItems.indexOf(panel.record.message_type_menu_string) // qmllint disable type
            onActivated: index => panel.record.message_type_menu_string = Vocabulary.messageTypeMenuItems[index]
        }

        RowLayout {
            Layout.alignment: Qt.AlignHCenter
            TextField {
                objectName: "channelField"
                Layout.preferredWidth: 65
                enabled: !panel.placeholder
                placeholderText: "MIDI通道"
                text: panel.record.message_channel_menu_string
                onTextEdited: panel.record.message_channel_menu_string = text
            }
            TextField {
                objectName: "controllerField"
                Layout.preferredWidth: 65
                enabled: !panel.placeholder
                placeholderText: "控制器号"
                text: panel.record.message_controller_number_code_string
                onTextEdited: panel.record.message_controller_number_code_string = text
            }
        }

        RowLayout {
            Layout.alignment: Qt.AlignHCenter
            SymbolLabel {
                objectName: "channelRange"
                Layout.preferredWidth: 65
                symbol: "\u2601"
                text: "1-16"
            }
            SymbolLabel {
                objectName: "controllerRange"
                Layout.preferredWidth: 65
                symbol: "\u2601"
                text: "0-127"
            }
        }
    }
}
