#include "MenuBarPopoverController.h"

namespace menubar_popover {

bool MenuBarPopoverController::toggle(const Toggle& toggle,
                                      MenuBarPopoverCloseMonitor& closeMonitor,
                                      PopoverPlatform& platform) {
    if (toggle.popover->isShown()) {
        toggle.popover->performClose(toggle.sender);
        return false;
    }
    if (toggle.onWillShow) toggle.onWillShow();
    toggle.popover->show(*toggle.button, toggle.preferredEdge);
    closeMonitor.install(toggle.popover, toggle.button);
    if (toggle.activateAppOnShow) platform.activateApplication();
    return true;
}

}  // namespace menubar_popover
