// Which item's help is to be shown; the window that holds the item draws it.
pragma Singleton
import QtQuick

QtObject {
    property Item owner: null
    property string text

    function enter(item, help) {
        if (help === "")
            return;
        owner = item;
        text = help;
    }
    function leave(item) {
        if (owner === item)
            owner = null;
    }
}
