// Where things stand on the screens. Main thread.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

class QScreen;

namespace tarnbeck {

// That of a status item; of the pointer where its place is not known. Never null with a display.
QScreen* screenOfItem(const QRect& item);

// Where a popover of `size` goes: centred below its item, or above it where the item is in the
// lower half; at `pointer` where the item's place is not known (an invalid rectangle). Always
// inside `available`, and at its upper left where it is larger than that. Pure.
struct PopoverPlace {
    QRect item;
    QPoint pointer;
    QSize size;
    QRect available;
};
QRect popoverFrame(const PopoverPlace& place);

}  // namespace tarnbeck
