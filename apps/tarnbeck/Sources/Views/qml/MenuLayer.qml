// Draws the open menu inside the window, above all else.
import QtQuick
import QtQuick.Window
import Tarnbeck

Item {
    id: root

    readonly property bool isOpen: Menus.owner !== null && Menus.owner.Window.window === root.Window.window
    property Item returnFocusTo: null
    property Item fallback: null

    function close() {
        Menus.close();
    }
    function take(index) {
        const action = Menus.choose;
        close();
        action(index);
    }

    anchors.fill: parent
    visible: isOpen
    z: 90

    onIsOpenChanged: {
        if (isOpen) {
            returnFocusTo = Focus.keeperOf(Window.window.activeFocusItem);
            const spot = Menus.owner.mapToItem(root, Menus.at.x, Menus.at.y);
            card.x = Math.round(Math.max(8, Math.min(spot.x, width - card.width - 8)));
            const tall = Menus.entries.length * 28 + 8;  // what is in it is laid out later
            card.y = Math.round(spot.y + tall + 8 > height ? Math.max(8, height - tall - 8) : spot.y);
            list.current = Math.max(0, Menus.entries.findIndex(entry => entry.isChecked));
            list.forceActiveFocus();
        } else {
            Focus.giveBackTo(returnFocusTo, fallback);
            returnFocusTo = null;
        }
    }

    MouseArea {
        acceptedButtons: Qt.AllButtons
        anchors.fill: parent

        onPressed: root.close()
        onWheel: wheel => wheel.accepted = true
    }
    Rectangle {
        id: card

        Accessible.name: Menus.name
        Accessible.role: Accessible.PopupMenu
        border.color: Style.hairline
        color: Style.menuGround
        height: list.height + 8
        radius: Style.cardRadius
        width: Math.max(180, list.implicitWidth + 8)

        Column {
            id: list

            property int current: 0

            x: 4
            y: 4

            Keys.onDownPressed: current = Math.min(current + 1, Menus.entries.length - 1)
            Keys.onEnterPressed: root.take(current)
            Keys.onEscapePressed: root.close()
            Keys.onReturnPressed: root.take(current)
            Keys.onSpacePressed: root.take(current)
            Keys.onTabPressed: root.close()
            Keys.onUpPressed: current = Math.max(current - 1, 0)

            Repeater {
                model: root.isOpen ? Menus.entries : []

                Rectangle {
                    id: entry

                    required property int index
                    required property var modelData

                    Accessible.checkable: modelData.isChecked !== undefined
                    Accessible.checked: modelData.isChecked === true
                    Accessible.focused: list.current === index
                    Accessible.name: modelData.title
                    Accessible.role: Accessible.MenuItem
                    color: list.current === index ? Style.hover : "transparent"
                    height: 28
                    radius: Style.rowRadius
                    width: Math.max(172, content.width + 44)

                    Accessible.onPressAction: root.take(index)

                    Row {
                        id: content

                        anchors.verticalCenter: parent.verticalCenter
                        spacing: 8
                        x: 8

                        Symbol {
                            anchors.verticalCenter: parent.verticalCenter
                            color: Style.secondary
                            name: entry.modelData.symbol || ""
                            size: 14
                            visible: name !== ""
                        }
                        AppText {
                            anchors.verticalCenter: parent.verticalCenter
                            text: entry.modelData.title
                            width: Math.min(implicitWidth, 320)
                        }
                    }
                    Symbol {
                        anchors.right: parent.right
                        anchors.rightMargin: 8
                        anchors.verticalCenter: parent.verticalCenter
                        color: Style.accent
                        name: "checkmark"
                        size: 12
                        visible: entry.modelData.isChecked === true
                    }
                    HoverHandler {
                        onHoveredChanged: if (hovered)
                            list.current = entry.index
                    }
                    MouseArea {
                        anchors.fill: parent

                        onClicked: root.take(entry.index)
                    }
                }
            }
        }
    }
}
