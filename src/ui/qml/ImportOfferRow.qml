// After an import the panels still show the values from before, and closing
// would keep those: said as a warning, with the way to show the imported
// values now. The status line's row, made when the offer is first made.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

ColumnLayout {
    id: row

    required property WindowStatus status
    required property string warningSymbol
    required property color warningColour

    RowLayout {
        Layout.fillWidth: true
        Label {
            objectName: "importOfferSymbol"
            Layout.alignment: Qt.AlignTop
            Accessible.ignored: true
            text: row.warningSymbol
            color: row.warningColour
            font.pixelSize: 16
        }
        Label {
            objectName: "importOfferText"
            Layout.fillWidth: true
            text: row.status.importOffer.text
            color: row.warningColour
            wrapMode: Text.Wrap
            font.pixelSize: 12
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    Button {
        id: showImportedButton
        objectName: "showImportedButton"
        Layout.fillWidth: true
        text: row.status.importOffer.buttonText
        font.pixelSize: 12
        focusPolicy: Qt.StrongFocus
        activeFocusOnTab: true
        enabled: !row.status.busy
        Accessible.name: text
        PressGlue {
            button: showImportedButton
            onActivated: row.status.importOffer.showImported()
        }
        FocusFrame.shown: showImportedButton.visualFocus
    }
}
