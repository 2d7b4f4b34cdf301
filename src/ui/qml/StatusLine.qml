// The status line under the text area: which controllers of the family are
// present, and what the last press, set-all run, export or import really did.
// The text area keeps its own texts; nothing here is printed.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Dialcraft

ColumnLayout {
    id: line

    required property GlobalState globalState
    required property ConfigFileTransfer transfer
    readonly property WindowStatus status: StatusBoard.of(globalState)
    readonly property string warningSymbol: "⚠"
    readonly property color warningColour: "#8a2a00"

    objectName: "statusLine"
    spacing: 2

    // Not drawn: it starts after the window's first frame and follows the
    // MIDI service from then on.
    ControllerPresence {
        id: presence
        objectName: "controllerPresence"
        visible: false
        // The monitor listens from the same moment, after the first frame.
        onStartedChanged: if (started) line.status.monitor.start()
    }

    TransferNotes {
        transfer: line.transfer
        globalState: line.globalState
    }

    Label {
        objectName: "presenceText"
        Layout.fillWidth: true
        text: presence.text
        wrapMode: Text.Wrap
        font.pixelSize: 12
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    // What the chosen controller holds, summed up: written, differing and
    // never written knobs, by the ledger.
    Label {
        objectName: "ledgerSummary"
        Layout.fillWidth: true
        text: line.status.ledgerMarkers.summaryText
        wrapMode: Text.Wrap
        font.pixelSize: 12
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    // Keeps its room while hidden, so the column does not jump when a run
    // starts or ends.
    Item {
        Layout.fillWidth: true
        Layout.preferredHeight: progress.implicitHeight
        ProgressBar {
            id: progress
            objectName: "setAllProgress"
            anchors.fill: parent
            visible: line.status.setAll.running
            from: 0
            to: Math.max(1, line.status.setAll.total)
            value: line.status.setAll.done
            Accessible.name: "全部设置进度(Set All progress)"
        }
    }

    // The edits a window left unsaved when it ended without its shut-down,
    // offered back once (RestoreOfferRow), and after an import the way to
    // show the imported values (ImportOfferRow): each made when first offered.
    PartOnDemand {
        objectName: "restoreOffer"
        Layout.fillWidth: true
        needed: line.status.tableSync.restoreOffered
        part: Qt.resolvedUrl("RestoreOfferRow.qml")
        settings: ({ status: line.status })
    }
    PartOnDemand {
        objectName: "importOffer"
        Layout.fillWidth: true
        needed: line.status.importOffer.offered
        part: Qt.resolvedUrl("ImportOfferRow.qml")
        settings: ({
            status: line.status,
            warningSymbol: line.warningSymbol,
            warningColour: line.warningColour
        })
    }

    // Room for three lines at all times, so the column does not move as the
    // messages change. A warning (a press that did not get all of its
    // messages through) is drawn in its own colour behind a symbol, so it
    // does not rest on colour alone, and is told to screen readers.
    Rectangle {
        objectName: "statusMessageFrame"
        Layout.fillWidth: true
        Layout.preferredHeight: messageRow.implicitHeight + 4
        color: line.status.warning ? "#fff1d6" : "transparent"
        border.width: line.status.warning ? 1 : 0
        border.color: line.warningColour
        radius: 3
        RowLayout {
            id: messageRow
            anchors.fill: parent
            anchors.margins: 2
            Label {
                objectName: "statusWarningSymbol"
                Layout.alignment: Qt.AlignTop
                visible: line.status.warning
                Accessible.ignored: true
                text: line.warningSymbol
                color: line.warningColour
                font.pixelSize: 16
            }
            Label {
                id: message
                objectName: "statusMessage"
                Layout.fillWidth: true
                Layout.minimumHeight: 3 * metrics.height
                text: line.status.message
                color: line.status.warning ? line.warningColour : message.palette.windowText
                wrapMode: Text.Wrap
                font.pixelSize: 12
                Accessible.role: Accessible.StaticText
                Accessible.name: announcer.announced
                FontMetrics {
                    id: metrics
                    font: message.font
                }
                StatusAnnouncer {
                    id: announcer
                    objectName: "statusAnnouncer"
                    target: message
                    text: line.status.spokenMessage
                }
            }
        }
    }
}
