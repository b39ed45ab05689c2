// One of a few values: a trough whose thumb slides.
import QtQuick
import Tarnbeck

Rectangle {
    id: root

    property var titles: []
    property int selection: 0
    property string name
    readonly property real segmentWidth: (width - 4) / Math.max(1, titles.length)

    signal chosen(int index)

    function choose(index) {
        if (index >= 0 && index < titles.length && index !== selection)
            chosen(index);
    }

    Accessible.description: titles[selection] || ""
    Accessible.name: name
    Accessible.role: Accessible.Grouping
    activeFocusOnTab: true
    border.color: Style.hairline
    color: Style.trough
    height: Style.pillHeight
    radius: height / 2

    Keys.onLeftPressed: choose(selection - 1)
    Keys.onRightPressed: choose(selection + 1)

    Rectangle {
        color: Style.thumb
        height: parent.height - 4
        radius: height / 2
        width: root.segmentWidth
        x: 2 + root.selection * root.segmentWidth
        y: 2

        Behavior on x  {
            NumberAnimation {
                duration: Style.thumbSlide
                easing.type: Easing.InOutQuad
            }
        }
    }
    Row {
        anchors.fill: parent
        anchors.margins: 2

        Repeater {
            model: root.titles

            Item {
                id: segment

                required property int index
                required property string modelData

                Accessible.checkable: true
                Accessible.checked: segment.index === root.selection
                Accessible.name: segment.modelData
                Accessible.role: Accessible.RadioButton
                height: parent.height
                width: root.segmentWidth

                Accessible.onPressAction: root.choose(segment.index)
                Accessible.onToggleAction: root.choose(segment.index)

                AppText {
                    anchors.centerIn: parent
                    color: segment.index === root.selection || hover.hovered ? Style.text : Style.secondary
                    text: segment.modelData
                }
                HoverHandler {
                    id: hover
                }
                MouseArea {
                    anchors.fill: parent

                    onClicked: root.choose(segment.index)
                }
            }
        }
    }
    FocusRing {
        radius: height / 2
    }
}
