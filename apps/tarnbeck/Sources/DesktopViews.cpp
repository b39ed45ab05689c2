#include "DesktopViews.h"

#include <utility>

namespace tarnbeck {

class DesktopViews::Host : public PopoverHost {
  public:
    Host(DesktopViews& views, QtPopover& popover, QtPopoverPlatform& platform)
        : views_(views), popover_(popover) {
        popover_.setWindow(
            views_.windows_.popoverWindow([&platform] { platform.escapeWasPressed(); }));
    }

    void setRootView(const MainView::Host& form, ScreenSize size) override {
        popover_.setContentSize(QSizeF(size.width, size.height).toSize());
        views_.windows_.setPopoverView(std::make_unique<MainView>(views_.services_(), form));
    }
    void dropRootView() override { views_.windows_.setPopoverView(nullptr); }

  private:
    DesktopViews& views_;
    QtPopover& popover_;
};

DesktopViews::DesktopViews(std::function<MainView::Services()> services)
    : services_(std::move(services)) {}

QWindow* DesktopViews::mainWindow() {
    if (!mainWindow_) {
        const MainView::Host form{.embedToolbarInContent = true, .usesPopoverAppearance = false};
        mainWindow_ = windows_.mainWindow(std::make_unique<MainView>(services_(), form));
    }
    return mainWindow_;
}

std::unique_ptr<PopoverHost> DesktopViews::makePopoverHost(QtPopover& popover,
                                                           QtPopoverPlatform& platform) {
    return std::make_unique<Host>(*this, popover, platform);
}

}  // namespace tarnbeck
