// What is seen where no repository is: that none is configured, that none needs anything, or that
// the answer is still being looked for.
import QtQuick
import Tarnbeck

Item {
    id: root

    required property MainViewAdapter view
    readonly property var texts: view.areaTexts

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 8
        width: Math.min(parent.width - 32, 480)
        y: Math.round(parent.height * 0.4 - height / 2)

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            color: root.view.area === "empty" ? Style.secondary : Style.green
            name: root.texts.isLoading ? "" : root.texts.symbol || ""
            size: 48
            visible: name !== ""
        }
        Loader {
            active: root.texts.isLoading === true
            anchors.horizontalCenter: parent.horizontalCenter
            visible: active

            sourceComponent: Spinner {
                size: 24
            }
        }
        AppText {
            Accessible.name: text
            Accessible.role: Accessible.Heading
            font.pixelSize: Style.title
            horizontalAlignment: Text.AlignHCenter
            text: root.texts.title || root.texts.text || ""
            topPadding: 8
            width: parent.width
        }
        AppText {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            color: Style.secondary
            horizontalAlignment: Text.AlignHCenter
            text: root.texts.line || ""
            visible: text !== ""
            width: parent.width
        }
        Item {
            height: 8
            visible: button.visible
            width: 1
        }
        TextButton {
            id: button

            anchors.horizontalCenter: parent.horizontalCenter
            title: root.texts.button || ""
            visible: title !== ""

            onClicked: root.view.openSettings()
        }
    }
}
