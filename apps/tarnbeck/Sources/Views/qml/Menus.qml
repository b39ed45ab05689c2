// The one menu that is open, if any; the window that holds its owner draws it.
pragma Singleton
import QtQuick

QtObject {
    property Item owner: null
    property var entries: []  // {title, symbol, isChecked}
    property string name
    property var choose: null  // function of an index
    property point at: Qt.point(0, 0)  // in the owner

    function open(item, title, list, action, place) {
        entries = list;
        name = title;
        choose = action;
        at = place;
        owner = item;
    }
    function close() {
        owner = null;
    }
}
