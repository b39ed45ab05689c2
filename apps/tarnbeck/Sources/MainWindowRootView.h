// What stands in the main window. Main thread.
#pragma once

#include "AppConfiguration.h"
#include "DesktopPlatform.h"
#include "MainLoop.h"

namespace tarnbeck {

// Windows are found by their title, so it is exactly this.
inline constexpr const char* mainWindowTitle = "Tarnbeck";

struct MainWindowRootView {
    AppConfiguration::AppMode launchMode = AppConfiguration::AppMode::menuBarOnly;

    // Otherwise a clear area of one point.
    bool showsMainView() const { return launchMode == AppConfiguration::AppMode::regular; }

    // To be called when it has appeared. Where it shows nothing its window is hidden, a moment
    // later: it is not in the list of windows yet. Both must outlive that moment.
    void appeared(DesktopPlatform& platform, MainLoop& loop) const;
};

// Null where no window has the main window's title.
DesktopWindow* mainWindowOf(DesktopPlatform& platform);

}  // namespace tarnbeck
