// Joins views with the windows that show them. Main thread.
#pragma once

#include <QSize>
#include <QWindow>
#include <functional>
#include <memory>

#include "MenuBarController.h"
#include "QtPopover.h"
#include "QtPopoverPlatform.h"
#include "SettingsView.h"
#include "SettingsWindowFactory.h"
#include "ViewWindows.h"

namespace tarnbeck {

class DesktopViews {
  public:
    // `services` is asked for each new view.
    explicit DesktopViews(std::function<MainView::Services()> services);

    // Made at the first call. Closing hides it.
    QWindow* mainWindow();
    // For a window of the settings; `services` are those of its view, but for `dismiss`.
    std::shared_ptr<settings_window::WindowContent> makeSettingsContent(
        SettingsView::Services services, QSize minimumSize);
    // Both must outlive the host.
    std::unique_ptr<PopoverHost> makePopoverHost(QtPopover& popover, QtPopoverPlatform& platform);

  private:
    class Host;

    const std::function<MainView::Services()> services_;
    ViewWindows windows_;
    QWindow* mainWindow_ = nullptr;
};

}  // namespace tarnbeck
