// What a window that shows a main view is made of. While there is no view it is empty, and costs
// nothing.
import QtQuick
import Tarnbeck

Item {
    id: root

    property MainViewAdapter view: null
    property bool isPopover: false

    signal dismissed

    Loader {
        id: page

        active: root.view !== null
        anchors.fill: parent
        focus: true

        sourceComponent: MainPage {
            focus: true
            isPopover: root.isPopover
            view: root.view

            onDismissed: root.dismissed()
        }
    }
}
