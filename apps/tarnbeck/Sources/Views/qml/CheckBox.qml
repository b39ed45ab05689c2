// Chosen or not.
import QtQuick
import Tarnbeck

Clickable {
    id: root

    height: 18
    isCheckable: true
    ringInset: -3
    ringRadius: 6
    width: 18

    Rectangle {
        anchors.fill: parent
        border.color: root.isChecked ? Style.accent : Style.secondary
        color: root.isChecked ? Style.tinted(Style.accent, 0.25) : "transparent"
        radius: 4
    }
    Symbol {
        anchors.centerIn: parent
        color: Style.accent
        name: "checkmark"
        size: 12
        visible: root.isChecked
    }
}
