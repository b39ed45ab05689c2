#include "QtDesktopPlatform.h"

namespace tarnbeck {

// A window here has its place in the panel as long as it is seen, whatever the application is.
void applyActivationPolicy(ActivationPolicy /*policy*/) {}

void QtDesktopPlatform::activateIgnoringOtherApps() {
    if (policy_ == ActivationPolicy::regular || !windows().empty()) showMainWindow();
}

// There is no bar to show it in; the tray's menu has its command.
void QtDesktopPlatform::setMainMenu(const app_commands::MainMenu& /*menu*/) {}

}  // namespace tarnbeck
