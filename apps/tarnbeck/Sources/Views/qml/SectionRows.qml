// The rows of a section: only those in sight are made. Arrow keys move among them, left and right
// close and open, Return does what a click does, and Tab goes on to the row's own buttons.
import QtQuick
import Tarnbeck

ListView {
    id: root

    required property SectionAdapter section

    // The focus comes back here when a button of a row has gone.
    readonly property bool keepsFocus: true
    // In a card the whole area scrolls, and is asked to show a row.
    property bool scrollsItself: true

    signal revealRequested(real top, real height)

    Accessible.name: section.name
    Accessible.role: Accessible.Tree
    activeFocusOnTab: count > 0
    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: 96
    clip: true
    currentIndex: -1
    highlightFollowsCurrentItem: false
    interactive: false
    keyNavigationEnabled: false
    model: section.rows

    add: Transition {
        NumberAnimation {
            duration: Style.rowReveal
            easing.type: Easing.InOutQuad
            from: 0
            property: "opacity"
            to: 1
        }
    }
    delegate: SectionRow {
        isCurrent: root.activeFocus && root.currentIndex === index
        section: root.section
        width: ListView.view.width

        onTouched: {
            root.currentIndex = index;
            root.forceActiveFocus(Qt.MouseFocusReason);
        }
    }

    Keys.onDownPressed: event => {
        event.accepted = currentIndex < count - 1;
        if (event.accepted)
            select(currentIndex + 1);
    }
    Keys.onEnterPressed: if (currentItem)
        currentItem.activate()
    Keys.onLeftPressed: event => {
        event.accepted = currentItem !== null && currentItem.chevron === "chevron.down";
        if (event.accepted)
            currentItem.activate();
    }
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home)
            select(0);
        else if (event.key === Qt.Key_End)
            select(count - 1);
        else if (event.key === Qt.Key_PageDown)
            select(Math.min(count - 1, currentIndex + 10));
        else if (event.key === Qt.Key_PageUp)
            select(Math.max(0, currentIndex - 10));
        else
            return;
        event.accepted = true;
    }
    Keys.onReturnPressed: if (currentItem)
        currentItem.activate()
    Keys.onRightPressed: event => {
        event.accepted = currentItem !== null && currentItem.chevron === "chevron.right";
        if (event.accepted)
            currentItem.activate();
    }
    Keys.onSpacePressed: if (currentItem)
        currentItem.activate()
    Keys.onUpPressed: event => {
        event.accepted = currentIndex > 0;
        if (event.accepted)
            select(currentIndex - 1);
    }
    onActiveFocusChanged: if (activeFocus && currentIndex < 0)
        select(0)

    function select(index) {
        currentIndex = index;
        if (scrollsItself)
            positionViewAtIndex(index, ListView.Contain);
        else
            revealRequested(section.rows.topOf(index), section.rows.heightOf(index));
    }
}
