// One repository as a card of the masonry. Of its rows only those are made that can be seen:
// `seenTop` and `seenHeight` say what of the card lies in the viewport.
import QtQuick
import Tarnbeck

FocusScope {
    id: root

    required property SectionAdapter section

    // Something in the card is to be seen.
    signal revealRequested(real top, real height)

    property real seenTop: 0
    property real seenHeight: 0

    Rectangle {
        anchors.fill: parent
        border.color: Style.hairline
        color: Style.card
        radius: Style.cardRadius

        SectionHeader {
            id: header

            section: root.section
            width: parent.width

            onActiveFocusChanged: if (activeFocus && Style.focusByKeyboard)
                root.revealRequested(0, height)
        }
        Rectangle {
            color: Style.hairline
            height: 1
            visible: root.section.isExpanded && rows.count > 0
            width: parent.width
            y: header.height
        }
        SectionRows {
            id: rows

            readonly property real whole: Math.max(0, root.height - header.height - Style.bottomInset)
            readonly property real offset: Math.max(0, Math.min(root.seenTop - header.height, whole - height))

            contentY: offset
            opacity: root.section.isExpanded ? 1 : 0
            scrollsItself: false
            height: Math.min(whole, root.seenHeight)
            section: root.section
            width: parent.width
            y: header.height + offset

            Behavior on opacity  {
                NumberAnimation {
                    duration: Style.sectionReveal
                    easing.type: Easing.InOutQuad
                }
            }

            onRevealRequested: (top, height) => root.revealRequested(header.height + top, height)
        }
    }
}
