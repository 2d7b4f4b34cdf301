// Asks before the save dialog replaces an existing file. Only Qt's own save
// dialog needs it: native save dialogs ask themselves. Replace goes on with
// the save; Cancel (also Escape) goes back to the save dialog.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

Dialog {
    id: question

    // The chosen file, as the save dialog reported it.
    property url file
    property string fileName

    objectName: "overwriteQuestion"
    title: "替换文件(Replace File)"
    modal: true
    anchors.centerIn: Overlay.overlay
    closePolicy: Popup.CloseOnEscape

    onOpened: cancelButton.forceActiveFocus(Qt.TabFocusReason)

    ColumnLayout {
        Label {
            objectName: "overwriteText"
            text: "文件已存在,要替换它吗?(The file already exists. Replace it?)"
        }
        Label {
            objectName: "overwriteFile"
            text: question.fileName
            font.bold: true
        }
    }

    footer: DialogButtonBox {
        Button {
            id: replaceButton
            objectName: "replaceButton"
            text: "替换(Replace)"
            onClicked: question.accept()
            Keys.onReturnPressed: replaceButton.clicked()
            Keys.onEnterPressed: replaceButton.clicked()
            FocusRing {
                shown: replaceButton.visualFocus
            }
        }
        Button {
            id: cancelButton
            objectName: "keepButton"
            text: "取消(Cancel)"
            onClicked: question.reject()
            Keys.onReturnPressed: cancelButton.clicked()
            Keys.onEnterPressed: cancelButton.clicked()
            FocusRing {
                shown: cancelButton.visualFocus
            }
        }
    }
}
