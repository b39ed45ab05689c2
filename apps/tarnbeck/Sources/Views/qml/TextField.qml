// One line of text. What the logic holds is shown, unless it is what stands there already.
import QtQuick
import Tarnbeck

Rectangle {
    id: root

    property string value
    property string prompt
    property string accessibleName

    signal edited(string text)
    signal accepted

    border.color: input.activeFocus ? Style.tinted(Style.accent, 0.7) : Style.hairline
    color: Style.field
    height: Style.pillHeight
    radius: 7

    onValueChanged: if (input.text !== value)
        input.text = value

    TextInput {
        id: input

        Accessible.editable: true
        Accessible.name: root.accessibleName
        Accessible.role: Accessible.EditableText
        activeFocusOnTab: true
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        clip: true
        color: Style.text
        font.family: Style.family
        font.pixelSize: Style.body
        selectByMouse: true
        selectedTextColor: Style.isDark ? "#0b1015" : "#ffffff"
        selectionColor: Style.accent
        verticalAlignment: TextInput.AlignVCenter

        Component.onCompleted: text = root.value
        function take(event) {
            event.accepted = text !== "";
            if (event.accepted)
                root.accepted();
        }

        Keys.onEnterPressed: event => take(event)
        Keys.onReturnPressed: event => take(event)
        onTextEdited: root.edited(text)

        AppText {
            Accessible.ignored: true
            anchors.fill: parent
            color: Style.secondary
            text: root.prompt
            visible: input.text === "" && !input.preeditText
        }
        HoverHandler {
            cursorShape: Qt.IBeamCursor
        }
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -3
        border.color: Style.accent
        border.width: 2
        color: "transparent"
        radius: 9
        visible: input.activeFocus && Style.focusByKeyboard
    }
}
