// The desktop as Qt offers it. Main thread.
#pragma once

#include <QObject>
#include <QWindow>
#include <functional>
#include <memory>
#include <vector>

#include "DesktopPlatform.h"
#include "QtPopover.h"

namespace tarnbeck {

class QtStatusItem;

class QtDesktopPlatform : public DesktopPlatform {
  public:
    // `makeMainWindow` is called when it is first to be seen; the window is its maker's, and
    // closing must only hide it. `clock` must outlive this.
    QtDesktopPlatform(std::function<QWindow*()> makeMainWindow, const Clock& clock);
    ~QtDesktopPlatform() override;

    void attach(ApplicationDelegate& delegate) override;
    void detach() override { delegate_ = nullptr; }
    void openWindowGroup(const WindowGroup& group) override;
    void setActivationPolicy(ActivationPolicy policy) override;
    // Where there is no dock, in regular mode a main window that can't be seen is shown again, as a
    // click in the dock does elsewhere.
    void activateIgnoringOtherApps() override;
    // Those that can be seen.
    std::vector<DesktopWindow*> windows() override;
    void setMainMenu(const app_commands::MainMenu& menu) override;
    void terminate() override;
    bool hasStatusArea() const override;
    void showMainWindow() override;
    std::unique_ptr<StatusItem> makeStatusItem() override;
    std::shared_ptr<menubar_popover::Popover> makePopover() override;
    std::optional<ClickEvent> currentEvent() const override;
    std::optional<ScreenSize> mainScreenVisibleFrame() const override;

    QtPopover& popover() { return *popover_; }
    // What is attached; null where nothing is.
    ApplicationDelegate* delegate() { return delegate_; }

  private:
    class MainWindow;

    void lastWindowClosed();

    const std::unique_ptr<MainWindow> mainWindow_;
    const std::shared_ptr<QtPopover> popover_;
    ApplicationDelegate* delegate_ = nullptr;
    QtStatusItem* statusItem_ = nullptr;  // its maker's
    ActivationPolicy policy_ = ActivationPolicy::regular;
    QObject connections_;  // they end with it
};

// What the system makes of the policy beyond windows; a matter of macOS.
void applyActivationPolicy(ActivationPolicy policy);

}  // namespace tarnbeck
