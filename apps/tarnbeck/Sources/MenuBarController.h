// Owns the status item: keeps its icon in step with what it counts, opens the popover on a plain
// click and a small menu on a right or control-click. Main thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CaffeinateController.h"
#include "DesktopPlatform.h"
#include "MainLoop.h"
#include "MainView.h"
#include "MenuBarIconRenderState.h"
#include "MenuBarPopoverCloseMonitor.h"
#include "RepositoryScanner.h"
#include "WeakAnchor.h"

namespace tarnbeck {

// Shows a main view in the popover. It stays when the view goes, so that windows are used again.
class PopoverHost {
  public:
    PopoverHost() = default;
    PopoverHost(const PopoverHost&) = delete;
    PopoverHost& operator=(const PopoverHost&) = delete;
    virtual ~PopoverHost() = default;

    // A new view in the state in which all views begin, and a popover of this size around it.
    virtual void setRootView(const MainView::Host& form, ScreenSize size) = 0;
    // A popover that can't be seen costs nothing.
    virtual void dropRootView() = 0;
};

class MenuBarController {
  public:
    // All must outlive it.
    struct Services {
        RepositoryScanner& scanner;
        system_awake::CaffeinateController& caffeinateController;
        MainLoop& loop;
        DesktopPlatform& platform;
        menubar_popover::PopoverPlatform& popoverPlatform;
        // Called at the first show.
        std::function<std::unique_ptr<PopoverHost>(menubar_popover::Popover&)> makeHost;
        std::function<void()> onOpenSettings;
    };
    explicit MenuBarController(Services services);
    ~MenuBarController();
    MenuBarController(const MenuBarController&) = delete;
    MenuBarController& operator=(const MenuBarController&) = delete;

    // Only refreshes the icon where it is installed already.
    void installStatusItem();
    // Draws the icon anew if one of the values in it has changed.
    void refreshIcon();
    void handleStatusItemClick();
    void togglePopover();
    // Opens the popover for who has not found it yet: not where it is open, nor where the item has
    // been clicked.
    void showPopoverUnlessFound();

    // For the popover on a screen; on the main one where none is given.
    ScreenSize preferredPopoverSize(std::optional<ScreenSize> screenVisibleFrame) const;

    using Action = void (MenuBarController::*)();
    struct ContextMenuRow {
        MenuItem item;
        Action action = nullptr;  // of rows that can be chosen
    };
    // Made anew for each click, so that nothing in it can be out of date.
    std::vector<ContextMenuRow> makeContextMenu() const;

    void scanNow();
    void openSettings();
    void toggleCaffeinate();
    void toggleDirtyCount();
    void quitApp();

  private:
    void bindScanner();
    void refreshIconLater();
    MenuBarIconRenderState iconState() const;
    void showContextMenu();
    void willShowPopover();
    void popoverDidClose();
    std::shared_ptr<StatusItemButton> statusButton() const;

    const Services services_;
    std::unique_ptr<StatusItem> statusItem_;
    const std::shared_ptr<menubar_popover::Popover> popover_;
    menubar_popover::MenuBarPopoverCloseMonitor closeMonitor_;
    std::unique_ptr<PopoverHost> cachedHostingController_;
    std::vector<std::shared_ptr<void>> cancellables_;
    bool installed_ = false;
    bool wasClicked_ = false;
    std::optional<MenuBarIconRenderState> lastRenderedIconState_;
    bool refreshIsPending_ = false;
    WeakAnchor<MenuBarController> anchor_{*this};
};

}  // namespace tarnbeck
