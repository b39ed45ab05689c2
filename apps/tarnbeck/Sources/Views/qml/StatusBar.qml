// How all repositories stand, in one row; where there is no room, first the details at the right go,
// then those in the middle.
import QtQuick
import Tarnbeck

Item {
    id: root

    required property MainViewAdapter view
    readonly property real room: width - 24
    readonly property bool showDetailPills: pills.implicitWidth + 20 + details.implicitWidth <= room
    readonly property bool showTrailingDetails: showDetailPills && pills.implicitWidth + 20 + details.implicitWidth + 32 + trailing.implicitWidth <= room

    Accessible.name: "Status"
    Accessible.role: Accessible.StatusBar
    height: Style.statusBarHeight

    component StatusPills: Row {
        id: row

        property var values: []

        height: root.height
        spacing: 14

        Repeater {
            // Counted, so that a pill whose text changes stays the same item.
            model: row.values.length

            Row {
                id: pill

                required property int index
                readonly property var value: row.values[index] || ({})

                Accessible.name: value.text || ""
                Accessible.role: Accessible.StaticText
                height: root.height
                spacing: 5

                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Style.statusColor(pill.value.color)
                    name: pill.value.symbol || ""
                    size: 12
                    visible: name !== ""
                }
                AppText {
                    Accessible.ignored: true
                    anchors.verticalCenter: parent.verticalCenter
                    color: pill.value.isProminent ? Style.text : pill.value.symbol === "" ? Style.statusColor(pill.value.color) : Style.secondary
                    font.pixelSize: Style.small
                    text: pill.value.text || ""
                }
            }
        }
    }

    Rectangle {
        color: Style.hairline
        height: 1
        width: parent.width
    }
    StatusPills {
        id: pills

        values: root.view.pills
        x: 12
    }
    StatusPills {
        id: details

        anchors.left: pills.right
        anchors.leftMargin: 20
        values: root.view.detailPills
        visible: root.showDetailPills
    }
    StatusPills {
        id: trailing

        anchors.right: parent.right
        anchors.rightMargin: 12
        values: root.view.trailingDetails
        visible: root.showTrailingDetails
    }
}
