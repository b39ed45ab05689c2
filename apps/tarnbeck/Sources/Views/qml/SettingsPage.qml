// The settings: a sidebar of panes, and the cards of the selected one.
import QtQuick
import QtQuick.Window
import Tarnbeck

Item {
    id: root

    required property SettingsAdapter view
    readonly property color ground: Style.ground(0.78)

    focus: true

    Keys.onEnterPressed: view.done()
    Keys.onPressed: event => {
        if (event.matches(StandardKey.Close)) {
            event.accepted = true;
            view.done();
        }
    }
    Keys.onReturnPressed: view.done()

    Rectangle {
        anchors.fill: parent
        color: root.ground
    }
    Item {
        id: side

        Accessible.name: root.view.sidebarTitle
        Accessible.role: Accessible.PageTabList
        height: parent.height
        width: root.view.sidebarWidth

        Rectangle {
            anchors.fill: parent
            color: Style.over(root.ground, Style.bar)
        }
        AppText {
            font.pixelSize: Style.title
            font.weight: Font.DemiBold
            text: root.view.sidebarTitle
            x: 20
            y: 18
        }
        Column {
            spacing: 4
            width: parent.width - 24
            x: 12
            y: 56

            Repeater {
                model: root.view.sidebar.length

                Clickable {
                    id: entry

                    required property int index
                    readonly property var pane: root.view.sidebar[index] || ({})

                    Accessible.role: Accessible.PageTab
                    Accessible.selected: pane.isSelected === true
                    accessibleName: pane.title || ""
                    accessibleValue: pane.subtitle || ""
                    height: 48
                    ringInset: -2
                    width: parent.width

                    Keys.onDownPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
                    Keys.onUpPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
                    onClicked: root.view.selectPane(pane.pane)

                    Rectangle {
                        anchors.fill: parent
                        color: entry.pane.isSelected ? Style.thumb : entry.isHovered ? Style.hover : "transparent"
                        radius: Style.cardRadius
                    }
                    Symbol {
                        anchors.verticalCenter: parent.verticalCenter
                        color: entry.pane.isSelected ? Style.accent : Style.secondary
                        name: entry.pane.symbol || ""
                        size: 18
                        x: 12
                    }
                    Column {
                        anchors.verticalCenter: parent.verticalCenter
                        x: 42

                        AppText {
                            Accessible.ignored: true
                            text: entry.pane.title || ""
                        }
                        AppText {
                            Accessible.ignored: true
                            color: Style.secondary
                            font.pixelSize: Style.small
                            text: entry.pane.subtitle || ""
                        }
                    }
                }
            }
        }
        Rectangle {
            anchors.right: parent.right
            color: Style.hairline
            height: parent.height
            width: 1
        }
    }
    ListView {
        id: rows

        Accessible.role: Accessible.Pane
        anchors.bottom: bar.top
        anchors.left: side.right
        anchors.leftMargin: 24
        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.top: parent.top
        boundsBehavior: Flickable.StopAtBounds
        bottomMargin: 16
        cacheBuffer: 2000
        clip: true
        currentIndex: -1
        highlightFollowsCurrentItem: false
        interactive: false
        keyNavigationEnabled: false
        model: root.view.rows
        topMargin: 20

        delegate: SettingsRow {
            view: root.view
            width: ListView.view.width
        }

        // What has the focus is brought into sight.
        Connections {
            function onActiveFocusItemChanged() {
                const item = root.Window.window.activeFocusItem;
                for (let each = item; each; each = each.parent) {
                    if (each === rows.contentItem) {
                        const top = item.mapToItem(rows.contentItem, 0, 0).y;
                        if (top - 24 < rows.contentY)
                            rows.contentY = Math.max(rows.originY - rows.topMargin, top - 24);
                        else if (top + item.height + 24 > rows.contentY + rows.height)
                            rows.contentY = top + item.height + 24 - rows.height;
                        return;
                    }
                }
            }

            target: root.Window.window
        }
        Connections {
            function onSidebarChanged() {
                rows.contentY = rows.originY - rows.topMargin;
            }

            target: root.view
        }
        WheelScroll {
            area: rows
        }
    }
    ScrollThumb {
        anchors.bottom: bar.top
        anchors.right: parent.right
        anchors.top: parent.top
        area: rows
    }
    Item {
        id: bar

        anchors.bottom: parent.bottom
        anchors.left: side.right
        anchors.right: parent.right
        height: 52

        Rectangle {
            color: Style.hairline
            height: 1
            width: parent.width
        }
        TextButton {
            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            isProminent: true
            title: root.view.doneTitle

            onClicked: root.view.done()
        }
    }
    MenuLayer {
    }
    TipBubble {
    }
}
