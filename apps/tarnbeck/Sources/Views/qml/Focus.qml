// Where the focus goes when what took it closes. Buttons that are only there while their row has the
// focus go with it: the list keeps it for them.
pragma Singleton
import QtQuick

QtObject {
    function keeperOf(item) {
        for (let each = item; each; each = each.parent) {
            if (each.keepsFocus === true)
                return each;
        }
        return item;
    }
    function giveBackTo(item, fallback) {
        if (item && item.visible)
            item.forceActiveFocus();
        else if (fallback)
            fallback.forceActiveFocus();
    }
}
