// The repositories side by side, each a column of its own; only those in sight are made.
import QtQuick
import Tarnbeck

ListView {
    id: root

    required property MainViewAdapter view

    // Brings a column into sight, where the next ones are made.
    function reveal(index) {
        positionViewAtIndex(index, ListView.Contain);
    }
    function go(by) {
        let from = -1;
        for (let index = 0; index < count; ++index) {
            const column = itemAtIndex(index);
            if (column && column.activeFocus)
                from = index;
        }
        const to = Math.max(0, Math.min(count - 1, from + by));
        reveal(to);
        const column = itemAtIndex(to);
        if (column)
            column.forceActiveFocus(Qt.TabFocusReason);
    }
    function tellViewport() {
        view.sections.setViewport(width, 0, height);
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

    // Control with an arrow goes from column to column.
    Keys.onPressed: event => {
        if (!(event.modifiers & Qt.ControlModifier) || (event.key !== Qt.Key_Left && event.key !== Qt.Key_Right))
            return;
        go(event.key === Qt.Key_Left ? -1 : 1);
        event.accepted = true;
    }
    Component.onCompleted: tellViewport()
    onHeightChanged: tellViewport()
    onWidthChanged: tellViewport()

    delegate: SectionColumn {
        height: ListView.view.height
        width: root.view.sections.columnWidth

        onActiveFocusChanged: if (activeFocus && Style.focusByKeyboard)
            Qt.callLater(root.reveal, index)
    }

    WheelScroll {
        area: root
        isHorizontal: true
    }
    Connections {
        function onSplitViewReset() {
            Qt.callLater(root.positionViewAtBeginning);
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
