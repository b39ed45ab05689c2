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
        model: root.actions

        IconButton {
            id: button

            required property var modelData

            anchors.verticalCenter: parent.verticalCenter
            canFocus: root.canFocus
            color: Style.statusColor(modelData.color)
            help: modelData.help
            hoverGround: modelData.color === "secondary" ? Style.pressed : Style.tinted(Style.statusColor(modelData.color), 0.26)
            inProgress: modelData.inProgress
            symbol: modelData.symbol

            onClicked: root.performed(modelData.kind, modelData.occurrence)
            onContextRequested: {
                if (modelData.menuTitle !== "")
                    Menus.open(button, modelData.menuTitle, [{
                                "title": modelData.menuTitle,
                                "symbol": modelData.symbol
                            }], () => root.performed(modelData.kind, modelData.occurrence), Qt.point(0, height + 4))
            }
        }
    }
}
