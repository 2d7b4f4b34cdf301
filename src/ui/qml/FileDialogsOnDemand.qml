// The file dialogs (FileDialogs), made when the user first presses import or
// export rather than with the window: the window's first frame shows neither,
// and the dialogs' plugin, Qt's own dialog and the overwrite question cost a
// start time and memory that most sessions never use. FileDialogs is named
// by its address, not as a type, so that neither it nor its imports are
// loaded with this file. The loader itself is hidden, so it takes no place in
// the layout it sits in.
import QtQuick
import Dialcraft

Loader {
    id: loader

    required property GlobalState globalState
    // The item the overwrite question opens over.
    required property Item host
    // The dialogs' workflow once made; null until the first press.
    readonly property FileDialogFlow flow: loader.item as FileDialogFlow

    objectName: "fileDialogsOnDemand"
    visible: false

    function make() {
        if (!loader.item)
            loader.setSource(Qt.resolvedUrl("FileDialogs.qml"), {
                globalState: loader.globalState,
                host: loader.host
            })
    }
    function importButtonPressed() {
        loader.make()
        loader.flow.importButtonPressed()
    }
    function exportButtonPressed() {
        loader.make()
        loader.flow.exportButtonPressed()
    }
}
