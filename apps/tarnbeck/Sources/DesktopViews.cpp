#include "DesktopViews.h"

#include <utility>

#include "QtContentWindow.h"

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

std::shared_ptr<settings_window::WindowContent> DesktopViews::makeSettingsContent(
    SettingsView::Services services, QSize minimumSize) {
    // The window, once there is one; it outlives its view.
    const auto shown = std::make_shared<QWindow*>(nullptr);
    services.dismiss = [shown] {
        if (*shown) (*shown)->close();
    };
    auto window = windows_.settingsWindow(std::make_unique<SettingsView>(std::move(services)));
    *shown = window.get();
    return std::make_shared<QtWindowContent>(std::move(window), minimumSize);
}

std::unique_ptr<PopoverHost> DesktopViews::makePopoverHost(QtPopover& popover,
                                                           QtPopoverPlatform& platform) {
    return std::make_unique<Host>(*this, popover, platform);
}

}  // namespace tarnbeck
