// A part of the window that the first frame does not show, made the first
// time it is needed rather than with the window, and kept from then on: the
// parts that most sessions never open cost no start time or memory. The part
// is named by its address, not as a type, so that it is compiled into the
// module yet not made with this file. Hidden while not needed, so it takes no
// room in the layout it sits in.
import QtQuick

Loader {
    id: loader

    // Whether the part shows; it is made the first time this turns true.
    required property bool needed
    // The part's file, resolved, and the values of its required properties.
    required property url part
    required property var settings

    visible: needed
    onNeededChanged: loader.make()
    Component.onCompleted: loader.make()

    function make() {
        if (loader.needed && !loader.item)
            loader.setSource(loader.part, loader.settings)
    }
}
