#include "QtPopoverPlatform.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace tarnbeck {

using menubar_popover::Event;
using menubar_popover::EventKind;

QtPopoverPlatform::QtPopoverPlatform(MainLoop& loop) : loop_(loop) {
    QCoreApplication::instance()->installEventFilter(this);
}

menubar_popover::Token QtPopoverPlatform::addLocalMonitor(
    const std::vector<EventKind>& kinds,
    std::function<menubar_popover::EventFate(const Event&)> handler) {
    return local_.add([kinds, handler = std::move(handler)](const Event& event) {
        if (std::ranges::find(kinds, event.kind) != kinds.end()) handler(event);
    });
}

menubar_popover::Token QtPopoverPlatform::addGlobalMonitor(
    const std::vector<EventKind>& /*kinds*/, std::function<void(const Event&)> handler) {
    return std::make_shared<std::function<void(const Event&)>>(std::move(handler));
}

menubar_popover::Point QtPopoverPlatform::mouseLocation() const {
    const QPoint at = QCursor::pos();
    return {static_cast<double>(at.x()), static_cast<double>(at.y())};
}

void QtPopoverPlatform::activateApplication() {
    if (QWindow* window = QGuiApplication::focusWindow()) window->requestActivate();
}

void QtPopoverPlatform::post(std::function<void()> task) {
    loop_.post(std::move(task));
}

void QtPopoverPlatform::escapeWasPressed() {
    Monitors::tell(local_.current(),
                   Event{.kind = EventKind::keyDown, .keyCode = menubar_popover::escapeKeyCode});
}

bool QtPopoverPlatform::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::MouseButtonPress || !watched->isWindowType()) return false;
    const auto button = static_cast<QMouseEvent*>(event)->button();
    if (button == Qt::LeftButton) {
        Monitors::tell(local_.current(), Event{.kind = EventKind::leftMouseDown});
    } else if (button == Qt::RightButton) {
        Monitors::tell(local_.current(), Event{.kind = EventKind::rightMouseDown});
    }
    return false;
}

}  // namespace tarnbeck
