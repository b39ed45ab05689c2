// A value between two others, by pointer and arrow keys.
import QtQuick
import Tarnbeck

Item {
    id: root

    property real value: 0
    property real from: 0
    property real to: 1
    property real step: 0.01
    property string accessibleName
    property string valueText
    readonly property real share: (value - from) / Math.max(0.0001, to - from)

    signal moved(real value)
    signal finished

    function move(value) {
        moved(Math.max(from, Math.min(to, value)));
    }
    function nudge(by) {
        move(value + by);
        finished();
    }

    Accessible.description: valueText
    Accessible.name: accessibleName
    Accessible.role: Accessible.Slider
    activeFocusOnTab: true
    height: 24

    Accessible.onDecreaseAction: nudge(-step)
    Accessible.onIncreaseAction: nudge(step)
    Keys.onDownPressed: nudge(-step)
    Keys.onLeftPressed: nudge(-step)
    Keys.onRightPressed: nudge(step)
    Keys.onUpPressed: nudge(step)

    Rectangle {
        color: Style.tile
        height: 4
        radius: 2
        width: parent.width
        y: 10
    }
    Rectangle {
        color: Style.accent
        height: 4
        radius: 2
        width: handle.x + 8
        y: 10
    }
    Rectangle {
        id: handle

        border.color: Style.panelLine
        color: Style.isDark ? "#e8ecf1" : "#ffffff"
        height: 16
        radius: 8
        width: 16
        x: root.share * (root.width - width)
        y: 4
    }
    MouseArea {
        function follow(x) {
            root.move(root.from + (x - 8) / Math.max(1, root.width - 16) * (root.to - root.from));
        }

        anchors.fill: parent
        preventStealing: true

        onPositionChanged: mouse => follow(mouse.x)
        onPressed: mouse => {
            root.forceActiveFocus(Qt.MouseFocusReason);
            follow(mouse.x);
        }
        onReleased: root.finished()
    }
    FocusRing {
    }
}
