// A question inside the window: nothing else can be reached until it is answered.
import QtQuick
import QtQuick.Window
import Tarnbeck

FocusScope {
    id: root

    required property MainViewAdapter view
    readonly property var alert: view.alert
    readonly property bool isOpen: alert.title !== undefined
    property Item returnFocusTo: null
    // Takes the focus when what had it is gone.
    property Item fallback: null

    function cancel() {
        if (!isOpen)
            return;
        const buttons = alert.buttons;
        const cancelling = buttons.findIndex(button => button.isCancel);
        view.answerAlert(cancelling >= 0 ? cancelling : 0);
    }

    // The buttons are made after the alert is told.
    function takeFocus() {
        for (let index = 0; isOpen && index < buttons.count; ++index) {
            const button = buttons.itemAt(index);
            if (button && button.isFirst)
                button.forceActiveFocus();
        }
    }

    anchors.fill: parent
    visible: isOpen
    z: 80

    Keys.onEscapePressed: cancel()
    onAlertChanged: Qt.callLater(takeFocus)
    onIsOpenChanged: {
        if (isOpen) {
            returnFocusTo = Focus.keeperOf(Window.window ? Window.window.activeFocusItem : null);
            forceActiveFocus();
        } else {
            Focus.giveBackTo(returnFocusTo, fallback);
            returnFocusTo = null;
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Style.scrim
    }
    MouseArea {
        acceptedButtons: Qt.AllButtons
        anchors.fill: parent
        hoverEnabled: true

        onWheel: wheel => wheel.accepted = true
    }
    Rectangle {
        Accessible.description: message.text
        Accessible.name: title.text
        Accessible.role: Accessible.Dialog
        anchors.horizontalCenter: parent.horizontalCenter
        border.color: Style.panelLine
        color: Style.alertGround
        height: texts.height + 40
        radius: Style.cardRadius
        width: Math.min(360, parent.width - 32)
        y: Math.round((parent.height - height) * 0.4)

        Column {
            id: texts

            spacing: 8
            width: parent.width - 40
            x: 20
            y: 20

            AppText {
                id: title

                font.pixelSize: Style.title
                font.weight: Font.DemiBold
                text: root.isOpen ? root.alert.title : ""
                width: parent.width
            }
            AppText {
                id: message

                color: Style.secondary
                lineHeight: 1.15
                maximumLineCount: 12
                text: root.isOpen ? root.alert.message : ""
                width: parent.width
                wrapMode: Text.Wrap
            }
            Item {
                height: 4
                width: 1
            }
            Row {
                anchors.right: parent.right
                spacing: 8

                Repeater {
                    id: buttons

                    model: root.alert.buttons || []

                    TextButton {
                        required property int index
                        required property var modelData

                        KeyNavigation.backtab: buttons.itemAt((index + buttons.count - 1) % buttons.count)
                        KeyNavigation.left: buttons.itemAt(Math.max(0, index - 1))
                        KeyNavigation.right: buttons.itemAt(Math.min(buttons.count - 1, index + 1))
                        KeyNavigation.tab: buttons.itemAt((index + 1) % buttons.count)
                        isDestructive: modelData.isDestructive
                        title: modelData.title

                        readonly property bool isFirst: modelData.isCancel || buttons.count === 1

                        focus: isFirst

                        onClicked: root.view.answerAlert(index)
                    }
                }
            }
        }
    }
}
