// The row that sums up one repository.
import QtQuick
import Tarnbeck

Item {
    id: root

    required property SectionAdapter section

    function activate() {
        if (section.canCollapse)
            section.toggle();
    }

    Accessible.name: section.accessibleName
    Accessible.role: section.canCollapse ? Accessible.Button : Accessible.Heading
    activeFocusOnTab: section.canCollapse
    height: Style.headerHeight

    Accessible.onPressAction: activate()
    Keys.onEnterPressed: activate()
    Keys.onReturnPressed: activate()
    Keys.onSpacePressed: activate()

    Rectangle {
        anchors.fill: parent
        anchors.margins: 1
        color: Style.hover
        radius: Style.cardRadius - 1
        visible: hover.hovered && root.section.canCollapse
    }
    // How it stands, at a glance down the edge.
    Rectangle {
        color: Style.statusColor(root.section.statusColor)
        height: root.height - 16
        radius: 1
        width: 2
        x: 0
        y: 8
    }
    HoverHandler {
        id: hover
    }
    MouseArea {
        anchors.fill: parent
        enabled: root.section.canCollapse

        onClicked: root.activate()
    }
    Symbol {
        id: chevron

        anchors.verticalCenter: parent.verticalCenter
        color: Style.secondary
        name: root.section.isExpanded ? "chevron.down" : "chevron.right"
        size: 12
        visible: root.section.canCollapse
        x: Style.rowLeadingInset
    }
    Symbol {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        color: Style.statusColor(root.section.statusColor)
        name: root.section.statusIcon
        size: 16
        x: root.section.canCollapse ? Style.rowLeadingInset + Style.rowChevronSlotWidth + 2 : Style.rowLeadingInset
    }
    Rectangle {
        anchors.fill: name
        anchors.margins: -2
        color: Style.searchHighlight
        radius: 3
        visible: root.section.isNameHighlighted
    }
    AppText {
        id: name

        readonly property real room: right.x - 12 - x

        Accessible.ignored: true
        anchors.left: icon.right
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        font.pixelSize: Style.title
        font.weight: Font.DemiBold
        text: root.section.name
        width: Math.max(0, Math.min(implicitWidth, room))

        HoverHandler {
            onHoveredChanged: hovered && parent.truncated ? Tips.enter(parent, root.section.name) : Tips.leave(parent)
        }
    }
    AppText {
        Accessible.ignored: true
        anchors.baseline: name.baseline
        anchors.left: name.right
        anchors.leftMargin: 10
        color: Style.secondary
        font.pixelSize: Style.small
        text: root.section.summary
        visible: width > 24
        width: Math.min(implicitWidth, Math.max(0, right.x - 12 - x))
    }
    Row {
        id: right

        anchors.right: parent.right
        anchors.rightMargin: Style.rowTrailingInset
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        Actions {
            id: actions

            actions: root.section.actions
            anchors.verticalCenter: parent.verticalCenter

            onPerformed: (kind, occurrence) => root.section.performHeader(kind, occurrence)
        }
        Repeater {
            model: root.section.badges.length

            Badge {
                required property int index
                readonly property var badge: root.section.badges[index] || ({})

                anchors.verticalCenter: parent.verticalCenter
                isCompact: root.width < 190 + 130 * root.section.badges.length
                title: badge.title || ""
                value: badge.value || ""
                valueColor: badge.color || "secondary"
            }
        }
    }
    FocusRing {
        inset: 0
        radius: Style.cardRadius
    }
}
