// A short word at the bottom of the window that goes by itself.
import QtQuick
import Tarnbeck

Rectangle {
    id: root

    property var toast

    Accessible.name: toast.message
    Accessible.role: Accessible.AlertMessage
    border.color: Style.toastLine
    color: Style.toastGround
    height: 32
    opacity: toast.isVisible ? 1 : 0
    radius: 16
    visible: opacity > 0
    width: content.width + 28
    z: 60

    readonly property var token: toast.token

    // The same words once more are seen to come again.
    onTokenChanged: if (visible)
        again.restart()

    NumberAnimation {
        id: again

        duration: Style.toastChange
        from: 0.3
        property: "opacity"
        target: content
        to: 1
    }
    Behavior on opacity  {
        NumberAnimation {
            duration: Style.toastChange
            easing.type: Easing.InOutQuad
        }
    }

    Row {
        id: content

        anchors.centerIn: parent
        spacing: 8

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: "#63d297"
            name: "checkmark.circle.fill"
            size: 14
        }
        AppText {
            Accessible.ignored: true
            color: Style.toastText
            text: root.toast.message
        }
    }
}
