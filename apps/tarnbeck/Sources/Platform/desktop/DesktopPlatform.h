// What the application needs of the windowing system, as a list of operations, so that all that is
// decided above them runs without one. Main thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AccessoryAppCommandMenu.h"
#include "StatusItem.h"

namespace tarnbeck {

// Whether the application is one with windows, a menu and a place in the dock, or lives in the menu
// bar alone.
enum class ActivationPolicy { regular, accessory };

class DesktopWindow {
  public:
    DesktopWindow() = default;
    DesktopWindow(const DesktopWindow&) = delete;
    DesktopWindow& operator=(const DesktopWindow&) = delete;
    virtual ~DesktopWindow() = default;

    virtual std::string title() const = 0;
    virtual void makeKeyAndOrderFront() = 0;
    // Hides it without closing it.
    virtual void orderOut() = 0;
};

// What the platform calls back.
class ApplicationDelegate {
  public:
    ApplicationDelegate() = default;
    ApplicationDelegate(const ApplicationDelegate&) = delete;
    ApplicationDelegate& operator=(const ApplicationDelegate&) = delete;
    virtual ~ApplicationDelegate() = default;

    virtual void applicationDidFinishLaunching() = 0;
    virtual bool applicationShouldTerminateAfterLastWindowClosed() = 0;
    virtual void applicationWillTerminate() = 0;
};

// The main window, as the system makes it at start.
struct WindowGroup {
    std::string title;
    double width = 0;
    double height = 0;
    bool showsMainView = true;  // otherwise a clear point, which is not to be seen
};

class DesktopPlatform {
  public:
    DesktopPlatform() = default;
    DesktopPlatform(const DesktopPlatform&) = delete;
    DesktopPlatform& operator=(const DesktopPlatform&) = delete;
    virtual ~DesktopPlatform() = default;

    // `delegate` is told of everything until `detach`.
    virtual void attach(ApplicationDelegate& delegate) = 0;
    virtual void detach() = 0;
    virtual void openWindowGroup(const WindowGroup& group) = 0;

    virtual void setActivationPolicy(ActivationPolicy policy) = 0;
    virtual void activateIgnoringOtherApps() = 0;
    // The windows that are there; they are the platform's. Whether hidden ones count is its own
    // affair.
    virtual std::vector<DesktopWindow*> windows() = 0;
    virtual void setMainMenu(const app_commands::MainMenu& menu) = 0;
    // Ends the application by the usual path: the delegate is told.
    virtual void terminate() = 0;

    // Whether there is a place for status items now; it may come and go.
    virtual bool hasStatusArea() const = 0;
    // Shows the main window with the main view, whatever it was made with.
    virtual void showMainWindow() = 0;

    // Of variable length, not visible yet.
    virtual std::unique_ptr<StatusItem> makeStatusItem() = 0;
    // Transient and animated.
    virtual std::shared_ptr<menubar_popover::Popover> makePopover() = 0;
    // What is being handled right now, if it is a click.
    virtual std::optional<ClickEvent> currentEvent() const = 0;
    // The part of the main screen that is free of bars and panels.
    virtual std::optional<ScreenSize> mainScreenVisibleFrame() const = 0;
};

}  // namespace tarnbeck
