// One of the product's symbols, in a colour.
import QtQuick
import QtQuick.Window
import Tarnbeck

Image {
    id: root

    property string name
    property color color: Style.text
    property int size: 16

    Accessible.ignored: true
    fillMode: Image.PreserveAspectFit
    height: size
    source: name === "" ? "" : "image://symbol/" + name + "/" + ("" + color).substring(1)
    sourceSize: Qt.size(Math.round(size * Screen.devicePixelRatio), Math.round(size * Screen.devicePixelRatio))
    width: size
}
