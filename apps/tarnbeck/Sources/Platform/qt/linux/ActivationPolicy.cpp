#include "QtDesktopPlatform.h"

namespace tarnbeck {

// A window here has its place in the panel as long as it is seen, whatever the application is.
void applyActivationPolicy(ActivationPolicy /*policy*/) {}

// There is no bar to show it in; the tray's menu has its command.
void QtDesktopPlatform::setMainMenu(const app_commands::MainMenu& /*menu*/) {}

}  // namespace tarnbeck
