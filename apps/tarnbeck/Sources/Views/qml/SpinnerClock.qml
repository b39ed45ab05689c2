// The one clock of all progress indicators: eight steps a second, and none while there is nothing
// to turn.
pragma Singleton
import QtQuick

QtObject {
    id: root

    property int step: 0
    property int turning: 0
    readonly property Timer timer: Timer {
        interval: 125
        repeat: true
        running: root.turning > 0

        onTriggered: root.step = (root.step + 1) % 8
    }
}
