// The repositories side by side, each a column of its own; only those in sight are made.
import QtQuick
import Tarnbeck

ListView {
    id: root

    required property MainViewAdapter view

    function tellViewport() {
        view.sections.setViewport(width, 0, height)
    }

    Accessible.name: "Repositories"
    Accessible.role: Accessible.List
    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: 240
    clip: true
    highlightFollowsCurrentItem: false
    interactive: false
    keyNavigationEnabled: false
    model: view.sections
    orientation: ListView.Horizontal

    Component.onCompleted: tellViewport()
    onHeightChanged: tellViewport()
    onWidthChanged: tellViewport()

    delegate: SectionColumn {
        height: ListView.view.height
        width: root.view.sections.columnWidth
    }

    WheelScroll {
        area: root
        isHorizontal: true
    }
    Connections {
        function onSplitViewReset() {
            Qt.callLater(root.positionViewAtBeginning)
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
