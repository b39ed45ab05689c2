// One row of the settings, of any kind.
import QtQuick
import Tarnbeck

Item {
    id: root

    required property SettingsAdapter view
    required property string kind
    required property var value
    required property bool isOnCard
    required property bool isLast

    readonly property Component content: {
        switch (kind) {
        case "head":
            return head;
        case "toggle":
            return toggle;
        case "picker":
            return picker;
        case "slider":
            return slider;
        case "field":
            return field;
        case "editor":
            return editor;
        case "buttons":
            return buttons;
        case "note":
            return note;
        case "path":
            return path;
        }
        return discovered;
    }

    height: loader.height + (kind === "head" ? 14 : isOnCard ? 0 : 8) + (isLast ? 12 + (isOnCard ? 16 : 0) : 0)

    // The part of the card that this row stands on.
    Item {
        clip: true
        height: parent.height - (root.isLast ? 16 : 0)
        visible: root.isOnCard
        width: parent.width

        Rectangle {
            border.color: Style.hairline
            color: Style.card
            height: parent.height + (root.kind === "head" ? 0 : 12) + (root.isLast ? 0 : 12)
            radius: Style.cardRadius
            width: parent.width
            y: root.kind === "head" ? 0 : -12
        }
    }
    Loader {
        id: loader

        sourceComponent: root.content
        width: parent.width - (root.isOnCard ? 32 : 0)
        x: root.isOnCard ? 16 : 0
        y: root.kind === "head" ? 14 : root.isOnCard ? 0 : 8
    }
    component Titles: Column {
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        AppText {
            text: root.value.title || ""
            width: parent.width
        }
        AppText {
            color: Style.secondary
            font.pixelSize: Style.small
            maximumLineCount: 3
            text: root.value.subtitle || ""
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
    Component {
        id: head

        Item {
            Accessible.name: title.text
            Accessible.role: Accessible.Heading
            height: subtitle.visible ? subtitle.y + subtitle.height + 10 : 30

            AppText {
                id: title

                Accessible.ignored: true
                font.weight: Font.DemiBold
                text: root.value.title || ""
                width: parent.width
            }
            AppText {
                id: subtitle

                color: Style.secondary
                font.pixelSize: Style.small
                maximumLineCount: 3
                text: root.value.subtitle || ""
                visible: text !== ""
                width: parent.width
                wrapMode: Text.Wrap
                y: 22
            }
        }
    }
    Component {
        id: toggle

        Item {
            height: 46

            Titles {
                width: parent.width - 60
            }
            Switch {
                accessibleName: root.value.accessibleName || ""
                accessibleValue: root.value.subtitle || ""
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                isChecked: root.value.isOn === true

                onClicked: root.view.setOn(root.value.id, !isChecked)
            }
        }
    }
    Component {
        id: picker

        Item {
            height: 46

            Titles {
                width: parent.width - root.value.width - 24
            }
            Clickable {
                id: pick

                accessibleName: root.value.accessibleName || ""
                accessibleValue: chosen.text
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                height: Style.pillHeight
                width: root.value.width || 140

                onClicked: Menus.open(pick, accessibleName, root.value.options.map((option, index) => ({
                                    "title": option,
                                    "isChecked": index === root.value.selected
                                })), index => root.view.choose(root.value.id, index), Qt.point(0, height + 4))

                Rectangle {
                    anchors.fill: parent
                    border.color: Style.hairline
                    color: pick.isHovered ? Style.hover : Style.trough
                    radius: 7
                }
                AppText {
                    id: chosen

                    Accessible.ignored: true
                    anchors.verticalCenter: parent.verticalCenter
                    text: root.value.selected >= 0 ? root.value.options[root.value.selected] : ""
                    width: parent.width - 36
                    x: 12
                }
                Symbol {
                    anchors.right: parent.right
                    anchors.rightMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    color: Style.secondary
                    name: "chevron.down"
                    size: 10
                }
            }
        }
    }
    Component {
        id: slider

        Item {
            height: 40

            Slider {
                accessibleName: root.value.accessibleName || ""
                anchors.verticalCenter: parent.verticalCenter
                from: root.value.from
                step: root.value.step
                to: root.value.to
                value: root.value.value
                valueText: root.value.valueLabel
                width: parent.width - root.value.valueLabelWidth - 12

                onFinished: root.view.finishSetting(root.value.id)
                onMoved: value => root.view.setValue(root.value.id, value)
            }
            AppText {
                Accessible.ignored: true
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                color: Style.secondary
                horizontalAlignment: Text.AlignRight
                text: root.value.valueLabel || ""
                width: root.value.valueLabelWidth
            }
        }
    }
    Component {
        id: field

        Item {
            height: 42

            TextField {
                accessibleName: root.value.accessibleName || ""
                anchors.verticalCenter: parent.verticalCenter
                prompt: root.value.prompt || ""
                value: root.value.text || ""
                width: parent.width - add.width - 8

                onAccepted: root.view.press(root.value.button.id)
                onEdited: text => root.view.setText(root.value.id, text)
            }
            TextButton {
                id: add

                accessibleName: root.value.button.accessibleName
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                enabled: root.value.button.isEnabled
                title: root.value.button.title

                onClicked: root.view.press(root.value.button.id)
            }
        }
    }
    Component {
        id: editor

        Item {
            height: 112

            TextEditor {
                accessibleName: root.value.accessibleName || ""
                height: 104
                value: root.value.text || ""
                width: parent.width

                onEdited: text => root.view.setText(root.value.id, text)
            }
        }
    }
    Component {
        id: buttons

        Item {
            height: 44

            Row {
                anchors.right: root.isOnCard ? parent.right : undefined
                anchors.verticalCenter: parent.verticalCenter
                spacing: 8

                Repeater {
                    model: root.kind === "buttons" ? root.value.buttons.length : 0

                    TextButton {
                        required property int index
                        readonly property var button: root.kind === "buttons" && root.value.buttons[index] || ({})

                        accessibleName: button.accessibleName || ""
                        enabled: button.isEnabled === true
                        help: button.help || ""
                        inProgress: button.isInProgress === true
                        symbol: button.symbol || ""
                        title: button.title || ""

                        onClicked: root.view.press(button.id)
                    }
                }
            }
        }
    }
    Component {
        id: note

        Row {
            Accessible.name: root.value.text || ""
            Accessible.role: Accessible.StaticText
            height: 30
            spacing: 6

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                color: Style.secondary
                name: root.value.symbol || ""
                size: 12
                visible: name !== ""
            }
            AppText {
                anchors.verticalCenter: parent.verticalCenter
                color: Style.secondary
                font.pixelSize: root.value.symbol ? Style.small : Style.body
                text: root.value.text || ""
                width: Math.min(implicitWidth, loader.width - 24)
            }
        }
    }
    Component {
        id: path

        Item {
            Accessible.name: root.value.path || ""
            Accessible.role: Accessible.ListItem
            height: 30

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                color: Style.secondary
                name: root.value.symbol || ""
                size: 14
            }
            AppText {
                anchors.verticalCenter: parent.verticalCenter
                elide: Text.ElideMiddle
                text: root.value.path || ""
                width: parent.width - 60
                x: 24
            }
            IconButton {
                accessibleName: root.value.remove.accessibleName
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                help: root.value.remove.help
                symbol: root.value.remove.symbol
                symbolSize: 14

                onClicked: root.view.press(root.value.remove.id)
            }
        }
    }
    Component {
        id: discovered

        Item {
            height: 40

            CheckBox {
                id: box

                accessibleName: root.value.accessibleName || ""
                anchors.verticalCenter: parent.verticalCenter
                isChecked: root.value.isSelected === true

                onClicked: root.view.setOn(root.value.id, !isChecked)
            }
            Column {
                anchors.left: box.right
                anchors.leftMargin: 12
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter

                AppText {
                    text: root.value.name || ""
                    width: parent.width
                }
                AppText {
                    color: Style.secondary
                    elide: Text.ElideMiddle
                    font.pixelSize: Style.small
                    text: root.value.path || ""
                    width: parent.width
                }
            }
            MouseArea {
                anchors.fill: parent
                anchors.leftMargin: 24

                onClicked: root.view.setOn(root.value.id, !box.isChecked)
            }
        }
    }
}
