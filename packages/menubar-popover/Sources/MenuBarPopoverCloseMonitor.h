// Closes a popover when the user clicks anywhere else or presses Escape. The popover's own
// behaviour does not see all of these, which is why events are watched here.
#pragma once

#include <map>
#include <memory>

#include "PopoverPlatform.h"

namespace menubar_popover {

// One serves all popovers of an application. Main thread only.
class MenuBarPopoverCloseMonitor {
  public:
    // `platform` must outlive it.
    explicit MenuBarPopoverCloseMonitor(PopoverPlatform& platform);
    ~MenuBarPopoverCloseMonitor();
    MenuBarPopoverCloseMonitor(const MenuBarPopoverCloseMonitor&) = delete;
    MenuBarPopoverCloseMonitor& operator=(const MenuBarPopoverCloseMonitor&) = delete;

    // From now until the popover has closed. Both are held weakly. A session that is left over from
    // an earlier showing is ended first.
    void install(const std::shared_ptr<Popover>& popover,
                 const std::shared_ptr<StatusBarButton>& button);
    bool hasSession(const Popover& popover) const { return sessions_.contains(&popover); }

  private:
    class Session;

    PopoverPlatform& platform_;
    std::map<const Popover*, std::shared_ptr<Session>> sessions_;
    // What a session holds of this: it leads here for as long as this lives.
    std::shared_ptr<MenuBarPopoverCloseMonitor*> anchor_;
};

}  // namespace menubar_popover
