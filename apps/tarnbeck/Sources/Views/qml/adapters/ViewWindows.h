// The windows that show views: made of QML, which draws what the views say. Main thread; owns the
// QML engine, which is made when the first window is.
#pragma once

#include <QQuickWindow>
#include <functional>
#include <memory>

#include "MainView.h"
#include "SettingsView.h"

namespace tarnbeck {

class ViewWindows {
  public:
    ViewWindows();
    ~ViewWindows();
    ViewWindows(const ViewWindows&) = delete;
    ViewWindows& operator=(const ViewWindows&) = delete;

    // The main window, without a title and a size, not shown yet; its view lives as long as it.
    // Once only.
    QQuickWindow* mainWindow(std::unique_ptr<MainView> view);
    // The popover's window: frameless, above others, not shown yet. Made at the first call.
    // `onDismissed` is told of an Escape that nothing in it wanted.
    QQuickWindow* popoverWindow(std::function<void()> onDismissed);
    // What the popover shows from now on; null: nothing, at no cost.
    void setPopoverView(std::unique_ptr<MainView> view);
    // A window that shows the settings, not shown yet; the caller's, and to go before this. Its
    // view goes with it, before its destruction returns.
    std::unique_ptr<QQuickWindow> settingsWindow(std::unique_ptr<SettingsView> view);

  private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace tarnbeck
