// The two plain-text file dialogs that the top bar's import and export
// buttons raise, on their workflow (FileDialogFlow). Both dialogs start in
// the user's documents folder and are the desktop's own where it offers
// them; Qt's own save dialog, the fallback, is made to take a typed name at
// once and to ask before replacing a file.
import QtQuick
import QtQuick.Dialogs
import Dialcraft

FileDialogFlow {
    id: flow

    // The item the overwrite question opens over: the dialogs themselves are
    // no item, and a popup needs one to find its window.
    required property Item host

    objectName: "fileDialogs"

    property list<QtObject> parts: [
        // Each dialog is shown while its flag is raised; the flag drops when
        // the dialog closes, however it closes.
        FileDialog {
            objectName: "openDialog"
            fileMode: FileDialog.OpenFile
            acceptLabel: "打开(Open)"
            rejectLabel: "取消(Cancel)"
            currentFolder: DialogFiles.documentsFolder
            nameFilters: [DialogFiles.textFilesFilter]
            visible: flow.importing
            onVisibleChanged: if (!visible) flow.importing = false
            onAccepted: flow.importCompleted(DialogFiles.chosenFile(selectedFile))
            onRejected: flow.dialogCancelled()
        },
        FileDialog {
            id: saveDialog
            objectName: "saveDialog"
            fileMode: FileDialog.SaveFile
            acceptLabel: "保存(Save)"
            rejectLabel: "取消(Cancel)"
            currentFolder: DialogFiles.documentsFolder
            nameFilters: [DialogFiles.textFilesFilter]
            visible: flow.exporting
            onVisibleChanged: if (!visible) flow.exporting = false
            // A name chosen without an extension is saved as a .txt file.
            onAccepted: {
                const file = saveFallback.fileToSave(selectedFile)
                if (saveFallback.mustConfirmOverwrite(file)) {
                    overwriteQuestion.file = file
                    overwriteQuestion.fileName = DialogFiles.shownPath(file)
                    overwriteQuestion.open()
                } else {
                    flow.exportCompleted(DialogFiles.chosenFile(file))
                }
            }
            onRejected: flow.dialogCancelled()
        },
        SaveDialogFallback {
            id: saveFallback
            objectName: "saveDialogFallback"
            dialog: saveDialog
        },
        OverwriteQuestion {
            id: overwriteQuestion
            parent: flow.host
            onAccepted: flow.exportCompleted(DialogFiles.chosenFile(overwriteQuestion.file))
            onRejected: {
                saveFallback.keepNameOnce()
                flow.exporting = true
            }
        }
    ]
}
