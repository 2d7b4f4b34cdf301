// Beside the set-all button: set only the knobs whose setting the chosen
// controller does not hold already, by the ledger. Offered once the ledger
// knows anything of that controller.
import QtQuick
import QtQuick.Controls
import Dialcraft

CheckBox {
    id: box

    required property GlobalState globalState
    readonly property WindowStatus status: StatusBoard.of(globalState)

    objectName: "onlyChangedBox"
    text: "只设置不同的(Only changed)"
    visible: status.ledgerMarkers.serialHasEntries
    enabled: !status.busy
    focusPolicy: Qt.StrongFocus
    checked: status.setAll.onlyChanged
    onToggled: status.setAll.onlyChanged = checked
    Accessible.name: text
    Accessible.description: "全部设置时跳过控制器已有的旋钮(Set All skips the knobs the controller already holds)"

    FocusFrame.shown: box.visualFocus
}
