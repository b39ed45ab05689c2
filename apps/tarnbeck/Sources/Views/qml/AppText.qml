// Text as it stands: never markup.
import QtQuick
import Tarnbeck

Text {
    color: Style.text
    elide: Text.ElideRight
    font.family: Style.family
    font.pixelSize: Style.body
    maximumLineCount: 1
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
}
