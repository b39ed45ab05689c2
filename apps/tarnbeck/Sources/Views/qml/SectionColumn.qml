// One repository as a column: its header stays while its rows scroll.
import QtQuick
import Tarnbeck

FocusScope {
    id: root

    required property SectionAdapter section
    required property int index

    Rectangle {
        anchors.bottomMargin: Style.bottomInset
        anchors.fill: parent
        anchors.leftMargin: 4
        anchors.rightMargin: 4
        anchors.topMargin: 8
        border.color: Style.hairline
        color: Style.card
        radius: Style.cardRadius

        SectionHeader {
            id: header

            section: root.section
            width: parent.width
        }
        Rectangle {
            color: Style.hairline
            height: 1
            visible: rows.count > 0
            width: parent.width
            y: header.height
        }
        SectionRows {
            id: rows

            anchors.bottom: parent.bottom
            anchors.bottomMargin: 1
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: header.bottom
            anchors.topMargin: 1
            bottomMargin: Style.bottomInset
            section: root.section

            // Where the user left it, also when the column was out of sight meanwhile.
            Component.onCompleted: contentY = root.section.scrollPosition
            onContentYChanged: root.section.scrollPosition = contentY
        }
        WheelScroll {
            area: rows
        }
        ScrollThumb {
            anchors.bottom: rows.bottom
            anchors.right: rows.right
            anchors.top: rows.top
            area: rows
        }
    }
}
