// The help of the item under the pointer, after a moment, inside the window.
import QtQuick
import QtQuick.Window
import Tarnbeck

Rectangle {
    id: root

    property Item owner: null

    function place() {
        const spot = owner.mapToItem(parent, owner.width / 2, owner.height + 6);
        x = Math.round(Math.max(8, Math.min(spot.x - width / 2, parent.width - width - 8)));
        const below = spot.y;
        y = Math.round(below + height + 8 > parent.height ? owner.mapToItem(parent, 0, 0).y - height - 6 : below);
    }

    Accessible.ignored: true
    border.color: Style.hairline
    color: Style.menuGround
    height: label.height + 10
    radius: Style.rowRadius
    visible: false
    width: label.width + 16
    z: 100

    AppText {
        id: label

        anchors.centerIn: parent
        font.pixelSize: Style.small
        maximumLineCount: 12
        text: root.visible ? Tips.text : ""
        width: Math.min(implicitWidth, 420)
        wrapMode: Text.Wrap
    }
    Timer {
        id: delay

        interval: Style.tipDelay

        onTriggered: {
            if (!root.owner || Tips.owner !== root.owner)
                return;
            root.visible = true;
            root.place();
        }
    }
    Connections {
        function onOwnerChanged() {
            root.visible = false;
            root.owner = Tips.owner && Tips.owner.Window.window === root.Window.window ? Tips.owner : null;
            if (root.owner)
                delay.restart();
            else
                delay.stop();
        }

        target: Tips
    }
}
