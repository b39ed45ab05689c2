// A small button that is only a symbol.
import QtQuick
import Tarnbeck

Clickable {
    id: root

    property string symbol
    property color color: Style.secondary
    property color hoverGround: Style.pressed
    property int symbolSize: 12
    property bool inProgress: false

    enabled: !inProgress
    height: 20
    ringInset: -2
    ringRadius: 12
    width: 20

    Rectangle {
        anchors.fill: parent
        color: root.hoverGround
        radius: height / 2
        visible: root.isHovered
    }
    Symbol {
        anchors.centerIn: parent
        color: root.color
        name: root.symbol
        size: root.symbolSize
        visible: !root.inProgress
    }
    Loader {
        active: root.inProgress
        anchors.centerIn: parent

        sourceComponent: Spinner {
        }
    }
}
