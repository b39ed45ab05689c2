// A button with words, as alerts and empty places have.
import QtQuick
import Tarnbeck

Clickable {
    id: root

    property string title
    property string symbol
    property bool isDestructive: false
    property bool isProminent: false
    property bool inProgress: false

    accessibleName: title
    height: Style.pillHeight
    opacity: enabled || inProgress ? 1 : 0.45
    ringInset: -4
    ringRadius: 10
    width: Math.max(72, content.width + 28)

    Rectangle {
        anchors.fill: parent
        border.color: root.isDestructive ? Style.tinted(Style.red, 0.6) : root.isProminent ? Style.tinted(Style.accent, 0.6) : Style.hairline
        color: root.isPressed ? Style.pressed : root.isHovered ? Style.hover : Style.trough
        radius: 7
    }
    Row {
        id: content

        anchors.centerIn: parent
        spacing: 6

        Loader {
            active: root.inProgress
            anchors.verticalCenter: parent.verticalCenter
            visible: active

            sourceComponent: Spinner {
            }
        }
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: Style.secondary
            name: root.symbol
            size: 14
            visible: name !== "" && !root.inProgress
        }
        AppText {
            color: root.isDestructive ? Style.red : Style.text
            text: root.title
        }
    }
}
