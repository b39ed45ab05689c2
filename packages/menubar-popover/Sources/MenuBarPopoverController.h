// Opens and closes a popover that belongs to a button of the menu bar. Main thread.
#pragma once

#include <functional>
#include <memory>

#include "MenuBarPopoverCloseMonitor.h"
#include "PopoverPlatform.h"

namespace menubar_popover::MenuBarPopoverController {

struct Toggle {
    const std::shared_ptr<Popover>& popover;
    const void* sender = nullptr;  // handed on to the popover when it is closed
    const std::shared_ptr<StatusBarButton>& button;
    Edge preferredEdge = Edge::bottom;
    bool activateAppOnShow = false;
    // Called before it is shown: the time to give it its content and its size.
    std::function<void()> onWillShow;
};

// True if it showed the popover, false if it closed it.
bool toggle(const Toggle& toggle, MenuBarPopoverCloseMonitor& closeMonitor,
            PopoverPlatform& platform);

}  // namespace menubar_popover::MenuBarPopoverController
