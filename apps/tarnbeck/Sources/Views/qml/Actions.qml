// The small buttons at the right of a row or a header.
import QtQuick
import Tarnbeck

Row {
    id: root

    property var actions: []
    property bool canFocus: true
    // What stays while the menu of a button is open, although the button may go.
    property Item menuOwner: root

    signal performed(int kind, int occurrence)

    // What is chosen is done here: the button may have gone by then.
    function openMenu(action, spot) {
        Menus.open(menuOwner, action.menuTitle, [{
                    "title": action.menuTitle,
                    "symbol": action.symbol
                }], () => performed(action.kind, action.occurrence), Qt.point(spot.x, spot.y));
    }

    spacing: 4

    Repeater {
        // Counted, so that a button that changes stays the same item.
        model: root.actions.length

        IconButton {
            id: button

            required property int index
            readonly property var action: root.actions[index] || ({})

            anchors.verticalCenter: parent.verticalCenter
            canFocus: root.canFocus
            color: Style.statusColor(action.color)
            help: action.help || ""
            hoverGround: action.color === "secondary" ? Style.pressed : Style.tinted(Style.statusColor(action.color), 0.26)
            inProgress: action.inProgress === true
            symbol: action.symbol || ""

            onClicked: root.performed(action.kind, action.occurrence)
            onContextRequested: {
                if (action.menuTitle !== "")
                    root.openMenu(action, mapToItem(root.menuOwner, 0, height + 4));
            }
        }
    }
}
