#include "MenuBarPopoverCloseMonitor.h"

#include <functional>
#include <utility>

namespace menubar_popover {

// Lasts from one showing of the popover until it has closed.
class MenuBarPopoverCloseMonitor::Session : public std::enable_shared_from_this<Session> {
  public:
    Session(PopoverPlatform& platform, std::weak_ptr<Popover> popover,
            std::weak_ptr<StatusBarButton> button, std::function<void()> onInvalidate)
        : platform_(platform),
          popover_(std::move(popover)),
          button_(std::move(button)),
          onInvalidate_(std::move(onInvalidate)) {}

    void begin() {
        using enum EventKind;
        const std::weak_ptr<Session> weak = weak_from_this();
        if (const auto popover = popover_.lock()) {
            didCloseObserver_ = popover->observeDidClose([weak] {
                if (const auto session = weak.lock()) session->invalidateLater();
            });
        }
        localEventMonitor_ = platform_.addLocalMonitor(
            {leftMouseDown, rightMouseDown, keyDown}, [weak](const Event& event) {
                const auto session = weak.lock();
                return session ? session->fateOfLocal(event) : EventFate::goesOn;
            });
        globalEventMonitor_ =
            platform_.addGlobalMonitor({leftMouseDown, rightMouseDown}, [weak](const Event&) {
                if (const auto session = weak.lock()) session->closeIfClickedElsewhere();
            });
    }

    void invalidate() {
        localEventMonitor_.reset();
        globalEventMonitor_.reset();
        didCloseObserver_.reset();
        onInvalidate_();
    }

  private:
    // Not within the notification, in which others may still look at what goes.
    void invalidateLater() {
        platform_.post([weak = weak_from_this()] {
            if (const auto session = weak.lock()) session->invalidate();
        });
    }

    EventFate fateOfLocal(const Event& event) {
        if (event.kind == EventKind::keyDown) {
            if (event.keyCode != escapeKeyCode) return EventFate::goesOn;
            closePopover();
            return EventFate::isSwallowed;
        }
        closeIfClickedElsewhere();
        return EventFate::goesOn;
    }

    void closeIfClickedElsewhere() {
        if (shouldCloseForMouseEvent()) closePopover();
    }

    void closePopover() {
        if (const auto popover = popover_.lock()) popover->performClose(nullptr);
    }

    // A click on the button is the toggle's business: were the popover closed for it here, the
    // toggle would open it again.
    bool shouldCloseForMouseEvent() const {
        const auto popover = popover_.lock();
        if (!popover || !popover->isShown()) return false;
        const Point location = platform_.mouseLocation();
        const auto button = button_.lock();
        const auto buttonFrame = button ? button->screenFrame() : std::nullopt;
        if (buttonFrame && buttonFrame->contains(location)) return false;
        const auto popoverFrame = popover->windowFrame();
        return !popoverFrame || !popoverFrame->contains(location);
    }

    PopoverPlatform& platform_;
    std::weak_ptr<Popover> popover_;
    std::weak_ptr<StatusBarButton> button_;
    Token localEventMonitor_;
    Token globalEventMonitor_;
    Token didCloseObserver_;
    std::function<void()> onInvalidate_;
};

MenuBarPopoverCloseMonitor::MenuBarPopoverCloseMonitor(PopoverPlatform& platform)
    : platform_(platform), anchor_(std::make_shared<MenuBarPopoverCloseMonitor*>(this)) {}

MenuBarPopoverCloseMonitor::~MenuBarPopoverCloseMonitor() = default;

void MenuBarPopoverCloseMonitor::install(const std::shared_ptr<Popover>& popover,
                                         const std::shared_ptr<StatusBarButton>& button) {
    const Popover* identity = popover.get();
    if (const auto found = sessions_.find(identity); found != sessions_.end()) {
        const auto earlier = found->second;
        earlier->invalidate();
    }
    const std::weak_ptr<MenuBarPopoverCloseMonitor*> anchor = anchor_;
    const auto session = std::make_shared<Session>(platform_, popover, button, [anchor, identity] {
        if (const auto monitor = anchor.lock()) (*monitor)->sessions_.erase(identity);
    });
    sessions_.emplace(identity, session);
    session->begin();
}

}  // namespace menubar_popover
