// The repositories as cards in one or two columns, one scrolled area.
import QtQuick
import Tarnbeck

Flickable {
    id: root

    required property MainViewAdapter view
    readonly property real margin: 8

    function reveal(top, height) {
        if (top - margin < contentY)
            contentY = Math.max(0, top - margin);
        else if (top + height + margin > contentY + root.height)
            contentY = top + height + margin - root.height;
    }
    function scrollTo(place) {
        contentY = Math.max(0, Math.min(place, contentHeight - height));
    }
    function tellViewport() {
        view.sections.setViewport(width - 2 * margin, contentY - margin, height);
    }

    Accessible.name: "Repositories"
    Accessible.role: Accessible.List
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: view.sections.contentHeight + 2 * margin
    contentWidth: width
    interactive: false

    // What the rows left over scrolls the area.
    Keys.onPressed: event => {
        if (event.key === Qt.Key_PageDown)
            scrollTo(contentY + height * 0.9);
        else if (event.key === Qt.Key_PageUp)
            scrollTo(contentY - height * 0.9);
        else
            return;
        event.accepted = true;
    }
    Component.onCompleted: tellViewport()
    onContentHeightChanged: contentY = Math.max(0, Math.min(contentY, contentHeight - height))
    onContentYChanged: tellViewport()
    onHeightChanged: tellViewport()
    onWidthChanged: tellViewport()

    WheelScroll {
        area: root
    }
    Repeater {
        model: root.view.sections

        SectionCard {
            required property real placeX
            required property real placeY
            required property real placeWidth
            required property real placeHeight

            height: placeHeight
            seenHeight: root.height + 200
            seenTop: root.contentY - y - 100
            width: placeWidth
            x: root.margin + placeX
            y: root.margin + placeY

            onRevealRequested: (top, height) => root.reveal(y + top, height)
        }
    }
    ScrollThumb {
        area: root
        height: root.height
        parent: root
        x: root.width - width
    }
}
