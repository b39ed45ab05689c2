// The controls above the repositories, in one line that scrolls where it is wider than the window.
import QtQuick
import Tarnbeck

Item {
    id: root

    required property MainViewAdapter view
    required property color ground
    readonly property var strip: view.strip
    readonly property var texts: view.stripTexts

    function takeSearchFocus() {
        reveal(search);
        search.takeFocus();
    }
    function clearSearch() {
        if (search.text === "")
            return false;
        search.clear();
        return true;
    }
    // Scrolls so that the control is in sight.
    function reveal(item) {
        const left = item.mapToItem(content, 0, 0).x;
        const most = Math.max(0, flick.contentWidth - flick.width);
        if (left - 24 < flick.contentX)
            flick.contentX = Math.max(0, left - 24);
        else if (left + item.width + 24 > flick.contentX + flick.width)
            flick.contentX = Math.min(most, left + item.width + 24 - flick.width);
    }

    Accessible.name: "Controls"
    Accessible.role: Accessible.ToolBar
    height: Style.stripHeight

    // What is wider than the window is moved by the wheel and by the focus.
    Item {
        id: flick

        property real contentX: 0
        readonly property real contentWidth: content.width + 24
        readonly property real originX: 0

        anchors.fill: parent

        onContentWidthChanged: contentX = Math.max(0, Math.min(contentX, contentWidth - width))
        onWidthChanged: contentX = Math.max(0, Math.min(contentX, contentWidth - width))

        WheelScroll {
            area: flick
            isHorizontal: true
            takesBoth: true
        }
        Row {
            id: content

            height: parent.height
            spacing: 4
            x: 12 - flick.contentX

            StripPill {
                pill: root.strip.viewToggle

                onClicked: root.view.toggleViewMode()
            }
            Divider {
            }
            StripPill {
                pill: root.strip.scan

                onClicked: root.view.scan()
            }
            StripPill {
                id: sortPill

                pill: root.strip.sort

                onClicked: Menus.open(sortPill, title, root.strip.sortMenu, index => root.view.chooseSort(root.strip.sortMenu[index].mode), Qt.point(0, height + 4))
            }
            StripPill {
                pill: root.strip.equalize
                visible: pill !== undefined && pill !== null

                onClicked: root.view.equalize()
            }
            Divider {
            }
            StripPill {
                hasDot: isSelected
                help: pill.help
                isCheckable: true
                isChecked: isSelected
                isSelected: pill.isSelected
                pill: root.strip.awake

                onClicked: root.view.toggleAwake()
            }
            Symbol {
                Accessible.ignored: false
                Accessible.name: root.strip.awakeFailure
                Accessible.role: Accessible.AlertMessage
                anchors.verticalCenter: parent.verticalCenter
                color: Style.orange
                name: "exclamationmark.triangle.fill"
                size: 14
                visible: root.strip.awakeFailure !== ""

                HoverHandler {
                    onHoveredChanged: hovered ? Tips.enter(parent, root.strip.awakeFailure) : Tips.leave(parent)
                }
            }
            StripPill {
                pill: root.strip.settings

                onClicked: root.view.openSettings()
            }
            Divider {
            }
            AppText {
                anchors.verticalCenter: parent.verticalCenter
                color: Style.secondary
                rightPadding: 4
                text: root.texts.filterLabel
            }
            SegmentedControl {
                anchors.verticalCenter: parent.verticalCenter
                name: root.texts.filterLabel
                selection: root.strip.filter
                titles: root.view.filters
                width: root.texts.filterWidth

                onActiveFocusChanged: if (activeFocus)
                    root.reveal(this)
                onChosen: index => root.view.chooseFilter(index)
            }
            Item {
                height: 1
                width: 4
            }
            SegmentedControl {
                anchors.verticalCenter: parent.verticalCenter
                name: "Domain"
                selection: root.strip.domain
                titles: root.view.domains
                width: root.texts.domainWidth

                onActiveFocusChanged: if (activeFocus)
                    root.reveal(this)
                onChosen: index => root.view.chooseDomain(index)
            }
            Item {
                height: 1
                width: 4
            }
            SearchField {
                id: search

                anchors.verticalCenter: parent.verticalCenter
                clearButton: root.strip.clearSearch
                prompt: root.texts.searchPrompt
                symbol: root.texts.searchSymbol
                value: root.strip.searchText
                width: root.texts.searchWidth

                onEdited: text => root.view.setSearchText(text)
                onHasFocusChanged: if (hasFocus)
                    root.reveal(this)
            }
        }
    }

    component Divider: Item {
        anchors.verticalCenter: parent.verticalCenter
        height: 18
        width: 17

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            color: Style.hairline
            height: 18
            width: 1
        }
    }
    component StripPill: Pill {
        property var pill

        accessibleValue: pill ? pill.accessibleValue : ""
        anchors.verticalCenter: parent.verticalCenter
        help: pill ? pill.help : ""
        symbol: pill ? pill.symbol : ""
        title: pill ? pill.title : ""

        onActiveFocusChanged: if (activeFocus)
            root.reveal(this)
    }
    // More follows to the side.
    component Fade: Rectangle {
        property bool isNeeded: false
        property color from: Style.tinted(root.ground, 0)
        property color to: root.ground

        height: parent.height - 1
        visible: isNeeded
        width: 24

        gradient: Gradient {
            orientation: Gradient.Horizontal

            GradientStop {
                color: from
                position: 0
            }
            GradientStop {
                color: to
                position: 1
            }
        }
    }

    Fade {
        anchors.right: parent.right
        isNeeded: flick.contentX < flick.contentWidth - flick.width - 1
    }
    Fade {
        from: root.ground
        isNeeded: flick.contentX > 1
        to: Style.tinted(root.ground, 0)
    }
    Rectangle {
        anchors.bottom: parent.bottom
        color: Style.hairline
        height: 1
        width: parent.width
    }
}
