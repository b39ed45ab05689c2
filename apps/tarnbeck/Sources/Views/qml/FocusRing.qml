// Shows that its parent has the keyboard's focus, for the keyboard only.
import QtQuick
import Tarnbeck

Rectangle {
    property int inset: -4

    anchors.fill: parent
    anchors.margins: inset
    border.color: Style.accent
    border.width: 2
    color: "transparent"
    radius: 8
    visible: parent.activeFocus && Style.focusByKeyboard
    z: 10
}
