// The one screen of the application, in the window and in the popover alike.
import QtQuick
import Tarnbeck

Item {
    id: root

    required property MainViewAdapter view
    property bool isPopover: false
    readonly property color ground: Style.ground(view.backdropOpacity)
    readonly property color barGround: Style.over(ground, Style.bar)

    // Escape that nothing else wanted.
    signal dismissed

    function find() {
        if (strip.item && !alerts.isOpen && !menus.isOpen)
            strip.item.takeSearchFocus();
    }

    focus: true

    Keys.onEscapePressed: event => {
        if (isPopover)
            dismissed();
        else
            event.accepted = strip.item !== null && strip.item.clearSearch();
    }
    Keys.onPressed: event => {
        if (event.matches(StandardKey.Find)) {
            find();
            event.accepted = true;
        }
    }

    // A dark glass, as dense as configured.
    Rectangle {
        anchors.fill: parent
        color: root.ground
    }
    // The grounds of strip and status bar.
    Rectangle {
        color: root.barGround
        height: strip.height
        width: parent.width
    }
    Rectangle {
        anchors.bottom: parent.bottom
        color: root.barGround
        height: bar.height
        width: parent.width
    }
    FocusScope {
        id: everything

        anchors.fill: parent
        focus: true

        Loader {
            id: strip

            active: root.view.hasStrip
            width: parent.width

            sourceComponent: ControlStrip {
                ground: root.barGround
                view: root.view
            }
        }
        Loader {
            id: area

            anchors.bottom: bar.top
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: strip.bottom
            sourceComponent: root.view.area === "columns" ? columns : root.view.area === "list" ? masonry : empty
        }
        StatusBar {
            id: bar

            anchors.bottom: parent.bottom
            view: root.view
            width: parent.width
        }
    }
    Component {
        id: columns

        ColumnsArea {
            view: root.view
        }
    }
    Component {
        id: masonry

        MasonryArea {
            view: root.view
        }
    }
    Component {
        id: empty

        EmptyArea {
            view: root.view
        }
    }
    Toast {
        anchors.horizontalCenter: parent.horizontalCenter
        toast: root.view.toast
        y: parent.height - height - 24
    }
    AlertLayer {
        id: alerts

        fallback: everything
        view: root.view
    }
    MenuLayer {
        id: menus

        fallback: everything
    }
    TipBubble {
    }
    Rectangle {
        anchors.fill: parent
        border.color: Style.panelLine
        color: "transparent"
        visible: root.isPopover
        z: 95
    }
}
