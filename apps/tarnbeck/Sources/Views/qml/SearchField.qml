// The search field: what is typed is told at once, and the list follows when typing pauses.
import QtQuick
import Tarnbeck

Rectangle {
    id: root

    property string prompt
    property string symbol
    property var clearButton: null  // absent while there is nothing to clear
    property string value  // what is searched for; shown unless it stands there already
    property alias text: input.text
    readonly property bool hasFocus: input.activeFocus

    signal edited(string text)

    onValueChanged: if (input.text !== value)
        input.text = value

    function takeFocus() {
        input.forceActiveFocus();
        input.selectAll();
    }
    function clear() {
        if (input.text === "")
            return;
        input.text = "";
        edited("");
    }

    border.color: input.activeFocus ? Style.tinted(Style.accent, 0.7) : Style.hairline
    color: Style.field
    height: Style.pillHeight
    radius: height / 2

    Symbol {
        id: glass

        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        color: Style.secondary
        name: root.symbol
        size: 14
    }
    TextInput {
        id: input

        Accessible.editable: true
        Accessible.name: root.prompt
        Accessible.role: Accessible.EditableText
        Accessible.searchEdit: true
        activeFocusOnTab: true
        anchors.left: glass.right
        anchors.leftMargin: 8
        anchors.right: clearing.left
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        clip: true
        color: Style.text
        font.family: Style.family
        font.pixelSize: Style.body
        selectByMouse: true
        selectedTextColor: Style.isDark ? "#0b1015" : "#ffffff"
        selectionColor: Style.accent

        onTextEdited: root.edited(text)

        AppText {
            anchors.verticalCenter: parent.verticalCenter
            color: Style.secondary
            text: root.prompt
            visible: input.text === "" && !input.preeditText
        }
        HoverHandler {
            cursorShape: Qt.IBeamCursor
        }
    }
    IconButton {
        id: clearing

        anchors.right: parent.right
        anchors.rightMargin: 5
        anchors.verticalCenter: parent.verticalCenter
        help: root.clearButton ? root.clearButton.help : ""
        symbol: root.clearButton ? root.clearButton.symbol : ""
        symbolSize: 14
        visible: root.clearButton !== undefined && root.clearButton !== null

        onClicked: {
            root.clear();
            input.forceActiveFocus();
        }
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -3
        border.color: Style.accent
        border.width: 2
        color: "transparent"
        radius: height / 2
        visible: input.activeFocus && Style.focusByKeyboard
    }
}
