// The edits a window left unsaved when it ended without its shut-down
// (killed, crashed, power lost), offered back once: the status line's row,
// made when the offer stands.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

RowLayout {
    id: row

    required property WindowStatus status

    Label {
        objectName: "restoreOfferText"
        Layout.fillWidth: true
        text: row.status.restoreOfferText
        wrapMode: Text.Wrap
        font.pixelSize: 12
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Button {
        id: restoreButton
        objectName: "restoreEditsButton"
        text: "恢复(Restore)"
        focusPolicy: Qt.StrongFocus
        activeFocusOnTab: true
        enabled: !row.status.busy
        Accessible.name: row.status.restoreOfferText
        PressGlue {
            button: restoreButton
            onActivated: row.status.tableSync.restoreEdits()
        }
        FocusFrame.shown: restoreButton.visualFocus
    }
    Button {
        id: dismissButton
        objectName: "dismissEditsButton"
        text: "不恢复(Dismiss)"
        focusPolicy: Qt.StrongFocus
        activeFocusOnTab: true
        enabled: !row.status.busy
        Accessible.name: "不恢复, 修改留作文件(Dismiss unsaved edits, keep them as a file)"
        PressGlue {
            button: dismissButton
            onActivated: row.status.tableSync.dismissEdits()
        }
        FocusFrame.shown: dismissButton.visualFocus
    }
}
