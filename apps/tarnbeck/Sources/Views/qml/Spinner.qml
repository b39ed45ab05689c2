// Something is being worked on.
import QtQuick
import QtQuick.Window
import Tarnbeck

Item {
    id: root

    property int size: 12
    property color color: Style.secondary
    property bool isCounted: false
    readonly property bool isTurning: visible && Window.window !== null && Window.window.visible

    function count() {
        if (isTurning === isCounted)
            return;
        isCounted = isTurning;
        SpinnerClock.turning += isTurning ? 1 : -1;
    }

    Accessible.ignored: true
    height: size
    width: size

    Component.onCompleted: count()
    Component.onDestruction: if (isCounted)
        SpinnerClock.turning -= 1
    onIsTurningChanged: count()

    Repeater {
        model: 8

        Rectangle {
            required property int index
            readonly property real angle: index * Math.PI / 4
            readonly property real dot: Math.max(2, root.size / 6)

            color: root.color
            height: dot
            opacity: Style.reducesMotion ? 0.6 : 1 - 0.115 * ((SpinnerClock.step - index + 8) % 8)
            radius: dot / 2
            width: dot
            x: root.size / 2 + Math.sin(angle) * (root.size - dot) / 2 - dot / 2
            y: root.size / 2 - Math.cos(angle) * (root.size - dot) / 2 - dot / 2
        }
    }
}
