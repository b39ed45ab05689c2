#include "MenuBarController.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "MenuBarIconRenderer.h"
#include "MenuBarPopoverController.h"
#include "StatusTileRenderer.h"

namespace tarnbeck {
namespace {

struct PopoverExtent {
    double margin;
    double fraction;
    double smallest;
};
constexpr PopoverExtent popoverWidth{.margin = 8, .fraction = 0.985, .smallest = 760};
constexpr PopoverExtent popoverHeight{.margin = 20, .fraction = 0.94, .smallest = 560};

double preferredExtent(double screen, const PopoverExtent& extent) {
    const double limit = std::max(std::floor(screen - extent.margin), extent.smallest);
    const double scaled = std::max(std::floor(screen * extent.fraction), extent.smallest);
    return std::min(scaled, limit);
}

}  // namespace

MenuBarController::MenuBarController(Services services)
    : services_(std::move(services)),
      popover_(services_.platform.makePopover()),
      closeMonitor_(services_.popoverPlatform) {
    cancellables_.push_back(
        popover_->observeDidClose(anchor_.guarded([](auto& self) { self.popoverDidClose(); })));
    bindScanner();
}

MenuBarController::~MenuBarController() = default;

void MenuBarController::bindScanner() {
    cancellables_.push_back(services_.scanner.observe([this](auto) { refreshIconLater(); }));
    cancellables_.push_back(services_.caffeinateController.observe([this] { refreshIconLater(); }));
}

// However many changes there are in a turn of the loop.
void MenuBarController::refreshIconLater() {
    if (std::exchange(refreshIsPending_, true)) return;
    services_.loop.post(anchor_.guarded([](MenuBarController& self) {
        self.refreshIsPending_ = false;
        self.refreshIcon();
    }));
}

std::shared_ptr<StatusItemButton> MenuBarController::statusButton() const {
    return statusItem_ ? statusItem_->button() : nullptr;
}

void MenuBarController::installStatusItem() {
    if (installed_) return refreshIcon();
    auto item = services_.platform.makeStatusItem();
    const auto button = item->button();
    if (!button) return;
    button->setAction({ClickKind::leftMouseUp, ClickKind::rightMouseUp},
                      anchor_.guarded([](auto& self) { self.handleStatusItemClick(); }));
    item->setVisible(true);
    statusItem_ = std::move(item);
    installed_ = true;
    refreshIcon();
}

MenuBarIconRenderState MenuBarController::iconState() const {
    const bool showsCounts = services_.scanner.configuration().showDirtyCountInMenuBar;
    return {.gitBadgeCount = showsCounts ? services_.scanner.dirtyRepoCount() : 0,
            .awakeActive = services_.caffeinateController.isActive()};
}

void MenuBarController::refreshIcon() {
    const auto button = statusButton();
    if (!button) return;
    const MenuBarIconRenderState state = iconState();
    if (lastRenderedIconState_ == state) return;
    lastRenderedIconState_ = state;
    const TextMeasurement measure = statusItem_->textMeasurement();
    button->setImage({
        .menuBarImage = MenuBarIconRenderer::render(
            state, {.thickness = statusItem_->thickness(), .measure = measure}),
        .tile = StatusTileRenderer::render(state, measure),
        .toolTip = StatusTileRenderer::toolTip(state),
    });
}

void MenuBarController::handleStatusItemClick() {
    wasClicked_ = true;
    const auto event = services_.platform.currentEvent();
    const bool asksForMenu =
        event && (event->kind == ClickKind::rightMouseUp || event->controlKeyIsDown);
    if (asksForMenu) {
        showContextMenu();
    } else {
        togglePopover();
    }
}

void MenuBarController::showContextMenu() {
    if (!statusItem_) return;
    std::vector<MenuItem> items;
    std::vector<Action> actions;
    for (ContextMenuRow& row : makeContextMenu()) {
        items.push_back(std::move(row.item));
        actions.push_back(row.action);
    }
    const auto choose =
        anchor_.guarded([actions = std::move(actions)](MenuBarController& self, std::size_t index) {
            if (const Action action = actions.at(index)) (self.*action)();
        });
    statusItem_->popUpMenu(items, choose);
}

void MenuBarController::togglePopover() {
    const std::shared_ptr<menubar_popover::StatusBarButton> button = statusButton();
    if (!button) return;
    menubar_popover::MenuBarPopoverController::toggle(
        {.popover = popover_,
         .button = button,
         .preferredEdge = menubar_popover::Edge::bottom,
         .activateAppOnShow = false,
         .onWillShow = anchor_.guarded([](auto& self) { self.willShowPopover(); })},
        closeMonitor_, services_.popoverPlatform);
}

void MenuBarController::showPopoverUnlessFound() {
    if (!wasClicked_ && !popover_->isShown()) togglePopover();
}

void MenuBarController::willShowPopover() {
    const auto button = statusButton();
    const ScreenSize size =
        preferredPopoverSize(button ? button->screenVisibleFrame() : std::nullopt);
    if (!cachedHostingController_) cachedHostingController_ = services_.makeHost(*popover_);
    cachedHostingController_->setRootView(
        {.embedToolbarInContent = true, .usesPopoverAppearance = true}, size);
}

// The view may be in the middle of what closed it.
void MenuBarController::popoverDidClose() {
    services_.loop.post(anchor_.guarded([](MenuBarController& self) {
        if (!self.popover_->isShown() && self.cachedHostingController_) {
            self.cachedHostingController_->dropRootView();
        }
    }));
}

ScreenSize MenuBarController::preferredPopoverSize(
    std::optional<ScreenSize> screenVisibleFrame) const {
    if (!screenVisibleFrame) screenVisibleFrame = services_.platform.mainScreenVisibleFrame();
    if (!screenVisibleFrame) return {1400, 980};
    return {preferredExtent(screenVisibleFrame->width, popoverWidth),
            preferredExtent(screenVisibleFrame->height, popoverHeight)};
}

}  // namespace tarnbeck
