// The small buttons at the right of a row or a header.
import QtQuick
import Tarnbeck

Row {
    id: root

    property var actions: []
    property bool canFocus: true
    readonly property bool hasProgress: actions.some(action => action.inProgress)

    signal performed(int kind, int occurrence)

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
                    Menus.open(button, action.menuTitle, [{
                                "title": action.menuTitle,
                                "symbol": action.symbol
                            }], () => root.performed(action.kind, action.occurrence), Qt.point(0, height + 4))
            }
        }
    }
}
