// What all buttons share: pointer, keyboard, focus ring, help, and a name for screen readers.
import QtQuick
import Tarnbeck

Item {
    id: root

    property string help
    property string accessibleName: help
    property string accessibleValue
    property bool canFocus: true
    property bool isCheckable: false
    property bool isChecked: false
    property int ringInset: -4
    property int ringRadius: 8
    readonly property bool isHovered: hover.hovered && enabled
    readonly property bool isPressed: area.pressed

    signal clicked
    signal contextRequested

    Accessible.checkable: isCheckable
    Accessible.checked: isChecked
    Accessible.description: accessibleValue
    Accessible.name: accessibleName
    Accessible.role: isCheckable ? Accessible.CheckBox : Accessible.Button
    activeFocusOnTab: canFocus && enabled && visible

    Accessible.onPressAction: clicked()
    Accessible.onToggleAction: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onSpacePressed: clicked()
    Keys.onMenuPressed: contextRequested()
    Component.onDestruction: Tips.leave(root)

    onActiveFocusChanged: activeFocus && Style.focusByKeyboard ? Tips.enter(root, root.help) : Tips.leave(root)

    HoverHandler {
        id: hover

        onHoveredChanged: hovered ? Tips.enter(root, root.help) : Tips.leave(root)
    }
    MouseArea {
        id: area

        acceptedButtons: Qt.LeftButton | Qt.RightButton
        anchors.fill: parent

        onClicked: mouse => {
            Tips.leave(root);
            if (mouse.button === Qt.RightButton)
                root.contextRequested();
            else
                root.clicked();
        }
    }
    FocusRing {
        inset: root.ringInset
        radius: root.ringRadius
    }
}
