#include "ScreenGeometry.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace tarnbeck {
namespace {

constexpr int gap = 4;  // between the item and the popover

int within(int wanted, int lowest, int highest) {
    return std::max(lowest, std::min(wanted, highest));
}

}  // namespace

QScreen* screenOfItem(const QRect& item) {
    const QPoint at = item.isValid() ? item.center() : QCursor::pos();
    QScreen* screen = QGuiApplication::screenAt(at);
    return screen ? screen : QGuiApplication::primaryScreen();
}

QRect popoverFrame(const PopoverPlace& place) {
    const QRect anchor = place.item.isValid() ? place.item : QRect(place.pointer, QSize(1, 1));
    const QRect& available = place.available;
    const QSize size = place.size;
    const bool opensUpwards = anchor.center().y() > available.center().y();
    const int x = anchor.center().x() - size.width() / 2;
    const int y = opensUpwards ? anchor.top() - gap - size.height() : anchor.bottom() + 1 + gap;
    const QPoint corner(within(x, available.left(), available.right() + 1 - size.width()),
                        within(y, available.top(), available.bottom() + 1 - size.height()));
    return {corner, size};
}

}  // namespace tarnbeck
