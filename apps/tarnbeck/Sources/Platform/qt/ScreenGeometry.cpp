#include "ScreenGeometry.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
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

std::optional<ScreenSize> visibleFrameOf(const QScreen* screen) {
    if (!screen) return std::nullopt;
    const QSizeF size = screen->availableGeometry().size();
    return ScreenSize{size.width(), size.height()};
}

std::vector<ScreenArea> screenAreas() {
    std::vector<ScreenArea> areas;
    for (const QScreen* screen : QGuiApplication::screens()) {
        areas.push_back({.whole = screen->geometry(), .available = screen->availableGeometry()});
    }
    return areas;
}

std::optional<QRect> areaOfWindow(const QRect& frame, const std::vector<ScreenArea>& screens) {
    if (screens.empty()) return std::nullopt;
    const auto under = std::ranges::find_if(
        screens, [&](const ScreenArea& screen) { return screen.whole.contains(frame.center()); });
    return (under == screens.end() ? screens.front() : *under).available;
}

void bringToFront(QWindow& window) {
    window.setWindowStates(window.windowStates() & ~Qt::WindowStates(Qt::WindowMinimized));
    window.setVisible(true);  // `show` would make it as large as an ordinary one
    window.raise();
    window.requestActivate();
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
