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

    // The edits a window left unsaved when it ended without its shut-down
    // (killed, crashed, power lost), offered back once.
    RowLayout {
        objectName: "restoreOffer"
        Layout.fillWidth: true
        visible: line.status.tableSync.restoreOffered
        Label {
            objectName: "restoreOfferText"
            Layout.fillWidth: true
            text: line.status.restoreOfferText
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
            enabled: !line.status.busy
            Accessible.name: line.status.restoreOfferText
            PressGlue {
                button: restoreButton
                onActivated: line.status.tableSync.restoreEdits()
            }
            FocusRing {
                shown: restoreButton.visualFocus
            }
        }
        Button {
            id: dismissButton
            objectName: "dismissEditsButton"
            text: "不恢复(Dismiss)"
            focusPolicy: Qt.StrongFocus
            activeFocusOnTab: true
            enabled: !line.status.busy
            Accessible.name: "不恢复, 修改留作文件(Dismiss unsaved edits, keep them as a file)"
            PressGlue {
                button: dismissButton
                onActivated: line.status.tableSync.dismissEdits()
            }
            FocusRing {
                shown: dismissButton.visualFocus
            }
        }
    }

    // Room for three lines at all times, so the column does not move as the
    // messages change.
    Label {
        id: message
        objectName: "statusMessage"
        Layout.fillWidth: true
        Layout.minimumHeight: 3 * metrics.height
        text: line.status.message
        wrapMode: Text.Wrap
        font.pixelSize: 12
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        FontMetrics {
            id: metrics
            font: message.font
        }
    }
}
