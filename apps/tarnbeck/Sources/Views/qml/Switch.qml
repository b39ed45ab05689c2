// On or off.
import QtQuick
import Tarnbeck

Clickable {
    id: root

    height: 20
    isCheckable: true
    ringInset: -3
    ringRadius: 13
    width: 36

    Rectangle {
        anchors.fill: parent
        border.color: root.isChecked ? Style.tinted(Style.accent, 0.9) : Style.panelLine
        color: root.isChecked ? Style.tinted(Style.accent, 0.55) : Style.trough
        radius: 10
    }
    Rectangle {
        color: root.isChecked ? (Style.isDark ? "#f2f5f8" : "#ffffff") : Style.secondary
        height: 14
        radius: 7
        width: 14
        x: root.isChecked ? 19 : 3
        y: 3

        Behavior on x  {
            NumberAnimation {
                duration: Style.thumbSlide
            }
        }
    }
}
