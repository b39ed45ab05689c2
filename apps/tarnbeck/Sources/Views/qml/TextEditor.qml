// Several lines of text. What the logic holds is shown, unless it is what stands there already.
import QtQuick
import Tarnbeck

Rectangle {
    id: root

    property string value
    property string accessibleName

    signal edited(string text)

    border.color: edit.activeFocus ? Style.tinted(Style.accent, 0.7) : Style.hairline
    color: Style.field
    radius: 7

    onValueChanged: if (edit.text !== value)
        edit.text = value

    Flickable {
        id: flick

        function follow(cursor) {
            if (contentY > cursor.y)
                contentY = cursor.y;
            else if (contentY + height < cursor.y + cursor.height)
                contentY = cursor.y + cursor.height - height;
        }

        anchors.fill: parent
        anchors.margins: 8
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: edit.height
        contentWidth: width
        interactive: false

        TextEdit {
            id: edit

            property bool isReady: false

            Accessible.editable: true
            Accessible.multiLine: true
            Accessible.name: root.accessibleName
            Accessible.role: Accessible.EditableText
            activeFocusOnTab: true
            color: Style.text
            font.family: Style.monospacedFamily
            font.pixelSize: Style.small
            height: Math.max(implicitHeight, flick.height)
            selectByMouse: true
            selectedTextColor: Style.isDark ? "#0b1015" : "#ffffff"
            selectionColor: Style.accent
            textFormat: TextEdit.PlainText
            width: flick.width
            wrapMode: TextEdit.WrapAnywhere

            Component.onCompleted: {
                text = root.value;
                isReady = true;
            }
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
            Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
            onCursorRectangleChanged: flick.follow(cursorRectangle)
            onTextChanged: if (isReady && text !== root.value)
                root.edited(text)

            HoverHandler {
                cursorShape: Qt.IBeamCursor
            }
        }
        WheelScroll {
            area: flick
        }
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -3
        border.color: Style.accent
        border.width: 2
        color: "transparent"
        radius: 9
        visible: edit.activeFocus && Style.focusByKeyboard
    }
}
