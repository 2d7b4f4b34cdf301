// The device column beside the knob rows: the model menu, the read-only
// text area in which the tool writes instructions and results, and the
// status line under it.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

ColumnLayout {
    id: column

    required property GlobalState globalState
    // What the import and export really did, for the status line.
    required property ConfigFileTransfer transfer
    // A set-all run is going on: the menu is off.
    readonly property bool busy: StatusBoard.of(globalState).busy

    objectName: "deviceColumn"
    Layout.rightMargin: 8

    // A screen reader learns of every new message in the text area.
    TextChangeAnnouncer {
        target: textArea
        text: column.globalState.fullText
    }

    SymbolLabel {
        Layout.preferredWidth: 220
        symbol: "\u273D"
        caption: "设备型号(Machine Serial)"
    }

    ComboBox {
        id: modelMenu
        objectName: "modelMenu"
        enabled: !column.busy
        Layout.preferredWidth: 130
        Layout.margins: 5
        Accessible.name: "设备型号(Machine Serial): " + displayText
        model: Vocabulary.machineTypes
        displayText: column.globalState.machine_type_menu_string
        // Qt 6.4's qmllint types a string list property as a bare QStringList and
        // misses the JavaScript array methods QML gives it, so it reports indexOf
        // as unknown; the directive silences that check on this line only.
        currentIndex: Vocabulary.machineTypes.indexOf(column.globalState.machine_type_menu_string) // qmllint disable type
        onActivated: index => column.globalState.machine_type_menu_string = Vocabulary.machineTypes[index]
        indicator: MenuArrow {
            menu: modelMenu
        }

        FocusFrame.shown: modelMenu.visualFocus
    }

    // Always disabled: it only shows what the tool writes, and can take
    // neither focus nor input. The frame scrolls when the text is long;
    // the frame, not the text, is a Tab stop, on which the arrow keys,
    // Page Up/Down, Home and End scroll the text, and which a screen
    // reader announces with the text it shows.
    ScrollView {
        id: textFrame
        objectName: "textAreaFrame"
        Layout.preferredWidth: 200
        Layout.preferredHeight: 200
        Layout.minimumWidth: 200
        Layout.minimumHeight: 200
        // A large window's room makes the messages' frame larger.
        Layout.fillWidth: true
        Layout.fillHeight: true
        // The style's own bars, placed as it places them, with names for
        // screen readers. The text wraps, so only the vertical one shows.
        ScrollBar.vertical: ScrollBar {
            parent: textFrame
            x: textFrame.mirrored ? 0 : textFrame.width - width
            y: textFrame.topPadding
            height: textFrame.availableHeight
            policy: ScrollBar.AlwaysOn
            visible: textFrame.contentHeight > textFrame.availableHeight
            Accessible.name: "信息(Messages)"
        }
        ScrollBar.horizontal: ScrollBar {
            parent: textFrame
            x: textFrame.leftPadding
            y: textFrame.height - height
            width: textFrame.availableWidth
            policy: ScrollBar.AlwaysOff
            Accessible.name: "信息(Messages)"
        }
        focusPolicy: Qt.TabFocus
        Accessible.role: Accessible.Pane
        Accessible.name: "信息(Messages)"
        Accessible.description: column.globalState.fullText
        Keys.onUpPressed: textFrame.ScrollBar.vertical.decrease()
        Keys.onDownPressed: textFrame.ScrollBar.vertical.increase()
        Keys.onPressed: event => {
            const bar = textFrame.ScrollBar.vertical
            const end = 1 - bar.size
            if (event.key === Qt.Key_PageUp)
                bar.position = Math.max(0, bar.position - bar.size)
            else if (event.key === Qt.Key_PageDown)
                bar.position = Math.min(end, bar.position + bar.size)
            else if (event.key === Qt.Key_Home)
                bar.position = 0
            else if (event.key === Qt.Key_End)
                bar.position = end
            else
                return
            event.accepted = true
        }

        background: Rectangle {
            color: "white"
            border.color: "black"
            border.width: 1

            FocusFrame.shown: textFrame.activeFocus
        }
        TextArea {
            id: textArea
            objectName: "textArea"
            Accessible.name: "信息(Messages)"
            Accessible.readOnly: true
            text: column.globalState.fullText
            readOnly: true
            enabled: false
            activeFocusOnTab: false
            activeFocusOnPress: false
            wrapMode: TextEdit.Wrap
            color: "black"
            font.pixelSize: 16
            background: null
        }
    }

    StatusLine {
        Layout.preferredWidth: 200
        Layout.minimumWidth: 200
        Layout.fillWidth: true
        globalState: column.globalState
        transfer: column.transfer
    }
}
