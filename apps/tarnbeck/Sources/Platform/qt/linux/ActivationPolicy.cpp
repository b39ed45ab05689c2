#include "QtDesktopPlatform.h"

namespace tarnbeck {

// A window here has its place in the panel as long as it is seen, whatever the application is.
void applyActivationPolicy(ActivationPolicy /*policy*/) {}

// The tray's menu has the command.
void QtDesktopPlatform::installQuitMenu(std::string_view /*appName*/) {}

}  // namespace tarnbeck
