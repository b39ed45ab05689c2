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
        property alias model: repeater.model

        height: root.height
        spacing: 14

        Repeater {
            id: repeater

            Row {
                id: pill

                required property var modelData

                Accessible.name: modelData.text
                Accessible.role: Accessible.StaticText
                height: root.height
                spacing: 5

                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Style.statusColor(pill.modelData.color)
                    name: pill.modelData.symbol
                    size: 12
                    visible: name !== ""
                }
                AppText {
                    Accessible.ignored: true
                    anchors.verticalCenter: parent.verticalCenter
                    color: pill.modelData.isProminent ? Style.text : pill.modelData.symbol === "" ? Style.statusColor(pill.modelData.color) : Style.secondary
                    font.pixelSize: Style.small
                    text: pill.modelData.text
                }
            }
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Style.bar
    }
    Rectangle {
        color: Style.hairline
        height: 1
        width: parent.width
    }
    StatusPills {
        id: pills

        model: root.view.pills
        x: 12
    }
    StatusPills {
        id: details

        anchors.left: pills.right
        anchors.leftMargin: 20
        model: root.view.detailPills
        visible: root.showDetailPills
    }
    StatusPills {
        id: trailing

        anchors.right: parent.right
        anchors.rightMargin: 12
        model: root.view.trailingDetails
        visible: root.showTrailingDetails
    }
}
