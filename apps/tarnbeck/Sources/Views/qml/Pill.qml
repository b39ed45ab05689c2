// A button of the control strip: symbol and title.
import QtQuick
import Tarnbeck

Clickable {
    id: root

    property string title
    property string symbol
    property bool isSelected: false
    property bool hasDot: false  // it is on: the tray's own sign

    accessibleName: title
    height: Style.pillHeight
    ringInset: -3
    ringRadius: height / 2 + 3
    width: content.width + 22

    Rectangle {
        anchors.fill: parent
        border.color: Style.hairline
        border.width: root.isSelected || root.isHovered ? 1 : 0
        color: root.isPressed ? Style.pressed : root.isSelected ? Style.thumb : root.isHovered ? Style.hover : "transparent"
        radius: height / 2
    }
    Row {
        id: content

        anchors.centerIn: parent
        spacing: 6

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: root.isSelected || root.isHovered ? Style.text : Style.secondary
            name: root.symbol
            size: 14
        }
        AppText {
            anchors.verticalCenter: parent.verticalCenter
            color: Style.text
            text: root.title
        }
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            color: Style.green
            height: 6
            radius: 3
            visible: root.hasDot
            width: 6
        }
    }
}
