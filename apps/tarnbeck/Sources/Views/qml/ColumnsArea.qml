// The repositories side by side, each a column of its own; only those in sight are made.
import QtQuick
import Tarnbeck

ListView {
    id: root

    required property MainViewAdapter view
    readonly property real minimumColumnWidth: 480
    readonly property real columnWidth: count > 0 ? Math.max((width - leftMargin - rightMargin) / count, minimumColumnWidth) : minimumColumnWidth

    function reset() {
        positionViewAtBeginning()
        contentX = originX - leftMargin
    }

    Accessible.name: "Repositories"
    Accessible.role: Accessible.List
    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: 240
    clip: true
    highlightFollowsCurrentItem: false
    interactive: false
    keyNavigationEnabled: false
    leftMargin: 4
    model: view.sections
    orientation: ListView.Horizontal
    rightMargin: 4

    delegate: SectionColumn {
        height: ListView.view.height
        width: root.columnWidth
    }

    WheelScroll {
        area: root
        isHorizontal: true
    }
    Connections {
        function onSplitViewReset() {
            Qt.callLater(root.reset)
        }

        target: root.view
    }
    ScrollThumb {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        area: root
        isHorizontal: true
        parent: root
    }
}
