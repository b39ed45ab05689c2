// Where things stand on the screens. Main thread.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <optional>
#include <vector>

#include "StatusItem.h"

class QScreen;
class QWindow;

namespace tarnbeck {

// That of a status item; of the pointer where its place is not known. Null where there is none.
QScreen* screenOfItem(const QRect& item);

// The part of a screen that is free of bars and panels; absent where there is no screen.
std::optional<ScreenSize> visibleFrameOf(const QScreen* screen);

// Where windows can stand on a screen.
struct ScreenArea {
    QRect whole;
    QRect available;  // without bars and panels
};
// Those that there are now, the primary one first.
std::vector<ScreenArea> screenAreas();
// Where a window with this frame belongs: on the screen under its centre, or else on the first one.
// Absent where there is none. Pure.
std::optional<QRect> areaOfWindow(const QRect& frame, const std::vector<ScreenArea>& screens);

// Shows a window in front of all others: out of the panel if it is there, and otherwise as large as
// it is.
void bringToFront(QWindow& window);

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
