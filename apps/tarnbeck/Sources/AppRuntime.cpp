#include "AppRuntime.h"

#include "MainWindowRootView.h"

namespace tarnbeck {

void AppRuntime::activateFromDuplicateLaunch(DesktopPlatform& platform) const {
    switch (launchMode) {
        case AppConfiguration::AppMode::menuBarOnly:
            // There is no main window to show.
            if (settingsWindowController) settingsWindowController->show();
            return;
        case AppConfiguration::AppMode::regular:
            platform.activateIgnoringOtherApps();
            if (DesktopWindow* window = mainWindowOf(platform)) window->makeKeyAndOrderFront();
            return;
    }
}

}  // namespace tarnbeck
