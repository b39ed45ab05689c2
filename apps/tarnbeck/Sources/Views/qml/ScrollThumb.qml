// Where a scrolled area stands, and a handle to move it by.
import QtQuick
import Tarnbeck

Item {
    id: root

    required property Flickable area
    property bool isHorizontal: false
    readonly property real seen: isHorizontal ? area.width : area.height
    readonly property real whole: isHorizontal ? area.contentWidth : area.contentHeight
    readonly property real track: isHorizontal ? width : height
    readonly property real length: Math.max(28, track * seen / Math.max(1, whole))
    readonly property real origin: isHorizontal ? area.originX : area.originY
    readonly property real share: (isHorizontal ? area.contentX - origin : area.contentY - origin) / Math.max(1, whole - seen)

    function moveTo(share) {
        const place = origin + Math.max(0, Math.min(1, share)) * (whole - seen);
        if (isHorizontal)
            area.contentX = place;
        else
            area.contentY = place;
    }

    Accessible.ignored: true
    height: isHorizontal ? 10 : undefined
    visible: whole > seen + 1
    width: isHorizontal ? undefined : 10
    z: 5

    Rectangle {
        readonly property real thickness: handle.containsMouse || handle.pressed ? 7 : 4

        color: Style.scrollThumb
        height: root.isHorizontal ? thickness : root.length
        opacity: handle.containsMouse || handle.pressed ? 1 : 0.6
        radius: thickness / 2
        width: root.isHorizontal ? root.length : thickness
        x: root.isHorizontal ? root.share * (root.track - root.length) : root.width - thickness - 2
        y: root.isHorizontal ? root.height - thickness - 2 : root.share * (root.track - root.length)
    }
    MouseArea {
        id: handle

        property real grip: 0

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true

        onPositionChanged: mouse => {
            if (pressed)
                root.moveTo(((root.isHorizontal ? mouse.x : mouse.y) - grip) / Math.max(1, root.track - root.length));
        }
        onPressed: mouse => {
            const place = root.isHorizontal ? mouse.x : mouse.y;
            const start = root.share * (root.track - root.length);
            grip = place >= start && place <= start + root.length ? place - start : root.length / 2;
            root.moveTo((place - grip) / Math.max(1, root.track - root.length));
        }
    }
}
