// One row of a section, of any kind.
import QtQuick
import Tarnbeck

Item {
    id: root

    required property SectionAdapter section
    required property int index
    required property int rowKey
    required property int kind
    required property int depth
    required property string chevron
    required property string symbol
    required property string symbolColor
    required property bool isLoading
    required property string status
    required property string statusColor
    required property string reference
    required property string title
    required property string countLabel
    required property bool isTitleSecondary
    required property bool isMonospaced
    required property bool isElidedInMiddle
    required property bool isTitleHighlighted
    required property string metaStatus
    required property string metaStatusColor
    required property string metaLabels
    required property string help
    required property bool isClickable
    required property bool opensByReference
    required property string clickHelp
    required property var actions
    required property string accessibleName
    required property int rowHeight
    required property int changes

    property bool isCurrent: false
    property bool isMade: false
    readonly property bool isSubsection: depth === 0 && chevron !== ""
    readonly property real inset: Style.rowLeadingInset + Math.max(0, depth - 1) * Style.rowPrimaryIconSlotWidth
    readonly property bool showsActions: hover.hovered || isCurrent || actions.some(action => action.inProgress)

    signal touched

    function activate() {
        if (isClickable)
            section.click(rowKey);
    }

    Accessible.description: clickHelp
    Accessible.focused: isCurrent
    Accessible.name: accessibleName
    Accessible.role: chevron !== "" ? Accessible.TreeItem : Accessible.ListItem
    height: rowHeight

    Accessible.onPressAction: activate()
    Component.onDestruction: Tips.leave(root)
    Component.onCompleted: isMade = true
    onChangesChanged: {
        if (!isMade)
            return;
        tint.active = false;
        tint.active = true;
    }

    // What changed is seen once.
    Loader {
        id: tint

        active: false
        anchors.fill: ground

        sourceComponent: Rectangle {
            color: Style.accent
            opacity: 0
            radius: Style.rowRadius

            NumberAnimation on opacity  {
                duration: Style.changeTint
                from: 0.22
                to: 0

                onFinished: tint.active = false
            }
        }
    }
    Rectangle {
        id: ground

        anchors.bottom: parent.bottom
        color: Style.hover
        height: root.isSubsection ? 28 : root.height
        opacity: root.isCurrent || (hover.hovered && root.isClickable) ? 1 : 0
        radius: Style.rowRadius
        visible: opacity > 0
        width: parent.width - 12
        x: 6

        Behavior on opacity  {
            NumberAnimation {
                duration: Style.hoverChange
                easing.type: Easing.InOutQuad
            }
        }
    }
    HoverHandler {
        id: hover

        cursorShape: root.isClickable && !root.isSubsection && !root.opensByReference ? Qt.PointingHandCursor : Qt.ArrowCursor

        onHoveredChanged: hovered ? Tips.enter(root, root.help !== "" ? root.help : title.truncated ? root.title : "") : Tips.leave(root)
    }
    MouseArea {
        anchors.fill: parent

        onClicked: {
            root.touched();
            if (!root.opensByReference)
                root.activate();
        }
    }
    Item {
        id: line

        anchors.bottom: parent.bottom
        height: root.isSubsection ? 28 : root.height
        width: parent.width

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: Style.secondary
            name: root.chevron
            size: 10
            visible: name !== ""
            x: root.inset + 1
        }
        // What only some rows have is made only for them.
        Loader {
            active: root.isSubsection
            anchors.verticalCenter: parent.verticalCenter
            x: root.inset + Style.rowChevronSlotWidth

            sourceComponent: Rectangle {
                color: Style.tile
                height: 18
                radius: Style.rowRadius
                width: 18
            }
        }
        Loader {
            active: root.symbol !== "" && !root.isLoading
            anchors.verticalCenter: parent.verticalCenter
            x: root.inset + Style.rowChevronSlotWidth + Math.round((18 - width) / 2)

            sourceComponent: Symbol {
                color: Style.statusColor(root.symbolColor)
                name: root.symbol
                size: root.symbol === "circle" || root.symbol === "circle.fill" ? 8 : 12
            }
        }
        Loader {
            active: root.isLoading
            anchors.verticalCenter: parent.verticalCenter
            x: root.inset + Style.rowChevronSlotWidth + 3

            sourceComponent: Spinner {
            }
        }
        Loader {
            active: root.status !== ""
            anchors.verticalCenter: parent.verticalCenter
            x: root.inset + Style.rowChevronSlotWidth

            sourceComponent: AppText {
                Accessible.ignored: true
                color: Style.statusColor(root.statusColor)
                elide: Text.ElideNone
                font.family: Style.monospacedFamily
                font.pixelSize: Style.small
                horizontalAlignment: Text.AlignHCenter
                text: root.status
                width: Style.statusColumnWidth
            }
        }
        Loader {
            id: link

            active: root.reference !== ""
            anchors.verticalCenter: parent.verticalCenter
            x: root.inset + Style.rowChevronSlotWidth + Style.rowPrimaryIconSlotWidth + 4

            sourceComponent: AppText {
                Accessible.ignored: true
                color: linkHover.hovered ? Style.accent : Style.secondary
                font.underline: linkHover.hovered
                rightPadding: 8
                text: root.reference

                HoverHandler {
                    id: linkHover

                    cursorShape: Qt.PointingHandCursor
                    enabled: root.opensByReference
                }
                MouseArea {
                    anchors.fill: parent
                    enabled: root.opensByReference

                    onClicked: {
                        root.touched();
                        root.activate();
                    }
                }
            }
        }
        Loader {
            active: root.isTitleHighlighted
            anchors.bottomMargin: 3
            anchors.fill: title
            anchors.leftMargin: -3
            anchors.rightMargin: -3
            anchors.topMargin: 3

            sourceComponent: Rectangle {
                color: Style.searchHighlight
                radius: 3
            }
        }
        AppText {
            id: title

            readonly property real room: metadata.x - 10 - x - (count.active ? count.width + 6 : 0)

            Accessible.ignored: true
            anchors.left: link.right
            anchors.verticalCenter: parent.verticalCenter
            color: root.isTitleSecondary ? Style.secondary : Style.text
            elide: root.isElidedInMiddle ? Text.ElideMiddle : Text.ElideRight
            font.family: root.isMonospaced ? Style.monospacedFamily : Style.family
            font.pixelSize: root.isMonospaced ? Style.small : Style.body
            height: parent.height
            text: root.title
            width: Math.max(0, Math.min(implicitWidth, room))
        }
        Loader {
            id: count

            active: root.countLabel !== ""
            anchors.left: title.right
            anchors.leftMargin: 6
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: 1

            sourceComponent: AppText {
                Accessible.ignored: true
                color: Style.secondary
                font.pixelSize: Style.small
                text: root.countLabel
            }
        }
        Row {
            id: metadata

            readonly property real room: Math.min(Style.metadataColumnWidth, root.width / 3)

            anchors.right: parent.right
            anchors.rightMargin: Style.rowTrailingInset + (root.actions.length > 0 ? root.actions.length * Style.actionColumnWidth : 0)
            height: parent.height
            spacing: 8

            Loader {
                active: root.metaStatus !== ""
                height: parent.height

                sourceComponent: AppText {
                    Accessible.ignored: true
                    color: Style.statusColor(root.metaStatusColor)
                    font.pixelSize: Style.small
                    text: root.metaStatus
                    width: Math.min(implicitWidth, metadata.room)
                }
            }
            Loader {
                active: root.metaLabels !== ""
                height: parent.height

                sourceComponent: AppText {
                    Accessible.ignored: true
                    color: Style.secondary
                    font.pixelSize: Style.small
                    text: root.metaLabels
                    width: Math.min(implicitWidth, metadata.room)
                }
            }
        }
        Actions {
            id: controls

            actions: root.showsActions ? root.actions : []
            anchors.right: parent.right
            anchors.rightMargin: Style.rowTrailingInset - 2
            anchors.verticalCenter: parent.verticalCenter
            canFocus: root.isCurrent
            menuOwner: root

            onPerformed: (kind, occurrence) => {
                root.touched();
                root.section.perform(root.rowKey, kind, occurrence);
            }
        }
    }
    Loader {
        active: root.isCurrent && Style.focusByKeyboard
        anchors.fill: ground

        sourceComponent: Rectangle {
            border.color: Style.accent
            border.width: 2
            color: "transparent"
            radius: Style.rowRadius
        }
    }
}
