// What closes a popover, as far as Qt shows it: mouse presses in the windows of this application,
// and the Escape that the popover's own content did not want. Of clicks in other applications
// nothing is shown; the popover sees that it is no longer active. Main thread.
#pragma once

#include <QObject>
#include <functional>
#include <vector>

#include "MainLoop.h"
#include "ObserverList.h"
#include "PopoverPlatform.h"

namespace tarnbeck {

class QtPopoverPlatform : public QObject, public menubar_popover::PopoverPlatform {
  public:
    explicit QtPopoverPlatform(MainLoop& loop);

    menubar_popover::Token addLocalMonitor(
        const std::vector<menubar_popover::EventKind>& kinds,
        std::function<menubar_popover::EventFate(const menubar_popover::Event&)> handler) override;
    menubar_popover::Token addGlobalMonitor(
        const std::vector<menubar_popover::EventKind>& kinds,
        std::function<void(const menubar_popover::Event&)> handler) override;
    menubar_popover::Point mouseLocation() const override;
    void activateApplication() override;
    void post(std::function<void()> task) override;

    // Nothing in the popover had a use for it.
    void escapeWasPressed();

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    using Monitors = ObserverList<menubar_popover::Event>;

    MainLoop& loop_;
    Monitors local_;
};

}  // namespace tarnbeck
