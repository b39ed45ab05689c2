// A title and a value, the value in its colour; hairline only, never filled.
import QtQuick
import Tarnbeck

Rectangle {
    id: root

    property string title
    property string value
    property string valueColor: "secondary"
    property bool isCompact: false  // where there is little room, the value says enough

    Accessible.name: title + " " + value
    Accessible.role: Accessible.StaticText
    border.color: Style.hairline
    color: "transparent"
    height: 20
    radius: 10
    width: content.width + 16

    Row {
        id: content

        anchors.centerIn: parent
        spacing: 4

        AppText {
            Accessible.ignored: true
            color: Style.secondary
            font.pixelSize: Style.small
            text: root.title
            visible: !root.isCompact
        }
        AppText {
            Accessible.ignored: true
            color: Style.statusColor(root.valueColor)
            font.pixelSize: Style.small
            text: root.value
        }
    }
}
