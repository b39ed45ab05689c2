#include "QtPopover.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <utility>

#include "ScreenGeometry.h"

namespace tarnbeck {

using namespace std::chrono_literals;

namespace {

constexpr auto momentOfAClick = 250ms;

QRect rectOf(const std::optional<menubar_popover::Rect>& frame) {
    if (!frame) return {};
    return QRectF(frame->x, frame->y, frame->width, frame->height).toRect();
}

// Wayland tells nobody where the pointer is: there the corner where most panels have their tray.
QPoint pointerOn(const QScreen& screen) {
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        return screen.availableGeometry().topRight();
    }
    return QCursor::pos();
}

}  // namespace

void QtPopover::setWindow(QWindow* window) {
    if (window_ == window) return;
    window_ = window;
    QObject::connect(window, &QObject::destroyed, &connections_, [this] { window_ = nullptr; });
    QObject::connect(window, &QWindow::activeChanged, &connections_, [this] { activeChanged(); });
    QObject::connect(window, &QWindow::visibleChanged, &connections_,
                     [this](bool visible) { visibleChanged(visible); });
}

bool QtPopover::isShown() const {
    return window_ && window_->isVisible();
}

void QtPopover::show(menubar_popover::StatusBarButton& button,
                     menubar_popover::Edge /*preferredEdge*/) {
    if (!window_) return;
    place(rectOf(button.screenFrame()));
    window_->show();
    window_->raise();
    window_->requestActivate();
}

void QtPopover::place(const QRect& item) {
    QScreen* screen = screenOfItem(item);
    if (!screen) return window_->resize(contentSize_);
    window_->setScreen(screen);
    window_->setGeometry(popoverFrame({.item = item,
                                       .pointer = pointerOn(*screen),
                                       .size = contentSize_,
                                       .available = screen->availableGeometry()}));
}

void QtPopover::performClose(const void* /*sender*/) {
    if (window_) window_->hide();
}

std::optional<menubar_popover::Rect> QtPopover::windowFrame() const {
    if (!isShown()) return std::nullopt;
    const QRect frame = window_->frameGeometry();
    return menubar_popover::Rect{static_cast<double>(frame.x()), static_cast<double>(frame.y()),
                                 static_cast<double>(frame.width()),
                                 static_cast<double>(frame.height())};
}

menubar_popover::Token QtPopover::observeDidClose(std::function<void()> observer) {
    return observers_.add(std::move(observer));
}

bool QtPopover::hasJustChanged() const {
    return changedAt_ && clock_.steadyNow() - *changedAt_ < momentOfAClick;
}

void QtPopover::activeChanged() {
    if (isShown() && !window_->isActive()) performClose(nullptr);
}

void QtPopover::visibleChanged(bool visible) {
    changedAt_ = clock_.steadyNow();
    if (!visible) ObserverList<>::tell(observers_.current());
}

}  // namespace tarnbeck
