// Scrolls an area by wheel and touchpad: a step of the wheel is three rows. (Dragging with the
// mouse selects and clicks; it does not throw the list about.)
import QtQuick

WheelHandler {
    id: root

    required property Item area
    property bool isHorizontal: false
    // Takes the turns of a plain wheel too, where there is nothing to scroll up and down.
    property bool takesBoth: false

    acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    target: null

    onWheel: event => {
        const sideways = event.modifiers & Qt.ShiftModifier || Math.abs(event.angleDelta.x) > Math.abs(event.angleDelta.y);
        const pixels = event.pixelDelta.x !== 0 || event.pixelDelta.y !== 0;
        const x = pixels ? event.pixelDelta.x : event.angleDelta.x * 0.6;
        const y = pixels ? event.pixelDelta.y : event.angleDelta.y * 0.6;
        if (isHorizontal) {
            if (!sideways && !takesBoth) {
                event.accepted = false;
                return;
            }
            const by = Math.abs(x) > Math.abs(y) ? x : y;
            area.contentX = Math.max(area.originX, Math.min(area.contentX - by, area.originX + Math.max(0, area.contentWidth - area.width)));
        } else {
            if (sideways) {
                event.accepted = false;
                return;
            }
            area.contentY = Math.max(area.originY, Math.min(area.contentY - y, area.originY + Math.max(0, area.contentHeight - area.height)));
        }
    }
}
