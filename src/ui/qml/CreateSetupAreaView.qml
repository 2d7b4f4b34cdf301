// The panel of one knob: its number and set button, the message-type menu,
// the channel and controller fields with their range hints. It edits its
// record in place and checks nothing; the set action reports through the
// shared text. Record 27 is the inert, dimmed placeholder.
// Keyboard: Tab visits the set button, the type menu, the channel and the
// controller field in that order; Space or Enter on the button and Enter in
// either field press the set button. Every control carries an accessible
// name that starts with the knob's own label, e.g. "5号旋钮 设置".
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
    // The panel's controls take input: not on the placeholder, and not while
    // a set-all run goes on.
    readonly property bool usable: !placeholder && !StatusBoard.of(globalState).busy
    // "5号旋钮": the label's text, also the start of every accessible name.
    readonly property string knobName: record.knob_index + "号旋钮"
    // What the chosen controller holds of this knob, by the ledger.
    readonly property KnobMonitor monitor: StatusBoard.of(globalState).monitor
    readonly property int marker: placeholder ? -1 : StatusBoard.of(globalState).ledgerMarkers.markers[record.knob_index] ?? -1

    // Declared for a result message and alert that the panel never presents:
    // results are only ever shown in the device column's text area.
    property string showmessage
    property string showmessage_title
    property bool showAlert: false

    objectName: "knobPanel"
    // What the ledger says and what the knob last sent, for screen readers.
    readonly property string stateText: mark.markerText !== "" && activity.activityText !== ""
        ? mark.markerText + ", " + activity.activityText : mark.markerText + activity.activityText
    Accessible.description: stateText
    padding: 8
    opacity: placeholder ? 0.5 : 1.0

    SetButtonAction {
        id: setAction
        data: panel.record
        globalState: panel.globalState
    }

    // The panel's controls carry ids (for Tab order and accessible names), so
    // this content item is created at once rather than deferred; that is what
    // the panel needs, and the directive says so to qmllint for this line.
    contentItem: ColumnLayout { // qmllint disable deferred-property-id
        spacing: 5

        RowLayout {
            Layout.alignment: Qt.AlignHCenter
            // The snow symbol is "✽": the CJK face has it, and a glyph it
            // lacks (such as "❄") would make the first frame search for and
            // open a fallback font.
            SymbolLabel {
                objectName: "knobLabel"
                symbol: "\u273D"
                caption: panel.knobName
            }
            Button {
                id: setButton
                objectName: "setButton"
                enabled: panel.usable
                padding: 1
                leftPadding: 8
                rightPadding: 8
                focusPolicy: Qt.StrongFocus
                hoverEnabled: true
                // The face is drawn here, so the style cannot grey it: it
                // fades while a set-all run has it off. The placeholder is
                // dimmed with its whole panel already.
                opacity: enabled || panel.placeholder ? 1 : 0.45
                Accessible.name: panel.knobName + " 设置"
                Accessible.description: panel.stateText
                contentItem: Text {
                    text: "设置"
                    color: "black"
                    font.pixelSize: 17
                    // Bold as the regular face outlined in its own colour: a
                    // bold weight would open the bold font file for these two
                    // characters, a fifth of the window's memory above a bare
                    // window's.
                    style: Text.Outline
                    styleColor: "black"
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    // Sinks a pixel while pressed, with the darker face below.
                    topPadding: setButton.down ? 2 : 0
                    Accessible.ignored: true
                }
                // Yellow at rest, a deeper yellow under the pointer, amber
                // while pressed.
                background: Rectangle {
                    color: setButton.down ? "#e0a800" : setButton.hovered ? "#ffd800" : "yellow"
                    radius: 10
                    border.width: setButton.hovered || setButton.down ? 1 : 0
                    border.color: "#806000"
                }
                PressGlue {
                    button: setButton
                    onActivated: setAction.press()
                }

                FocusFrame.shown: setButton.visualFocus
                FocusFrame.radius: 12
            }
        }

        ComboBox {
            id: typeMenu
            objectName: "typeMenu"
            Layout.alignment: Qt.AlignHCenter
            Layout.preferredWidth: 130
            enabled: panel.usable
            Accessible.name: panel.knobName + " 消息类型: " + displayText
            model: Vocabulary.messageTypeMenuItems
            displayText: panel.record.message_type_menu_string
            // Qt 6.4's qmllint types a string list property as a bare QStringList and
            // misses the JavaScript array methods QML gives it, so it reports indexOf
            // as unknown; the directive silences that check on this line only.
            currentIndex: Vocabulary.messageTypeMenuItems.indexOf(panel.record.message_type_menu_string) // qmllint disable type
            onActivated: index => panel.record.message_type_menu_string = Vocabulary.messageTypeMenuItems[index]
            // The placeholder "选择消息类型" is the list's last entry, so Down
            // on a fresh menu would go nowhere; it goes to the first type.
            Keys.onDownPressed: event => {
                if (!typeMenu.popup.visible && typeMenu.currentIndex === typeMenu.count - 1)
                    typeMenu.activated(0)
                else
                    event.accepted = false
            }
            indicator: MenuArrow {
                menu: typeMenu
            }

            FocusFrame.shown: typeMenu.visualFocus
        }

        RowLayout {
            Layout.alignment: Qt.AlignHCenter
            TextField {
                id: channelField
                objectName: "channelField"
                Layout.preferredWidth: 65
                enabled: panel.usable
                placeholderText: "MIDI通道"
                Accessible.name: panel.knobName + " MIDI通道"
                // The range hint under the field, for those who cannot see it.
                Accessible.description: "1-16"
                // Tab into the field selects its number, so typing replaces it.
                onActiveFocusChanged: if (channelField.activeFocus) channelField.selectAll()
                text: panel.record.message_channel_menu_string
                onTextEdited: panel.record.message_channel_menu_string = text
                onAccepted: setAction.press()

                FocusFrame.shown: channelField.activeFocus
            }
            TextField {
                id: controllerField
                objectName: "controllerField"
                Layout.preferredWidth: 65
                enabled: panel.usable
                placeholderText: "控制器号"
                Accessible.name: panel.knobName + " 控制器号"
                // The range hint under the field, for those who cannot see it.
                Accessible.description: "0-127"
                // Tab into the field selects its number, so typing replaces it.
                onActiveFocusChanged: if (controllerField.activeFocus) controllerField.selectAll()
                text: panel.record.message_controller_number_code_string
                onTextEdited: panel.record.message_controller_number_code_string = text
                onAccepted: setAction.press()

                FocusFrame.shown: controllerField.activeFocus
            }
        }

        RowLayout {
            Layout.alignment: Qt.AlignHCenter
            SymbolLabel {
                objectName: "channelRange"
                Layout.preferredWidth: 65
                symbol: "\u2601"
                caption: "1-16"
            }
            SymbolLabel {
                objectName: "controllerRange"
                Layout.preferredWidth: 65
                symbol: "\u2601"
                caption: "0-127"
            }
        }

        KnobMark {
            id: mark
            Layout.alignment: Qt.AlignHCenter
            marker: panel.marker
        }

        KnobActivity {
            id: activity
            Layout.alignment: Qt.AlignHCenter
            lastValue: panel.placeholder ? -1 : panel.monitor.lastValues[panel.record.knob_index] ?? -1
            lit: !panel.placeholder && (panel.monitor.active[panel.record.knob_index] ?? 0) === 1
            verified: !panel.placeholder && (panel.monitor.verified[panel.record.knob_index] ?? 0) === 1
        }
    }
}
