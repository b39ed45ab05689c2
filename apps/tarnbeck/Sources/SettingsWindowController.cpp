#include "SettingsWindowController.h"

#include <utility>

namespace tarnbeck {

namespace SettingsWindowFactory = settings_window::SettingsWindowFactory;

SettingsWindowController::SettingsWindowController(Services services)
    : services_(std::move(services)) {}

SettingsWindowController::~SettingsWindowController() {
    dropWindow();
}

void SettingsWindowController::show() {
    if (!window_) {
        window_ = SettingsWindowFactory::makeWindow(
            {.size = {920, 620},
             .title = "Settings",
             .styleMask =
                 {.titled = true, .closable = true, .miniaturizable = true, .resizable = true},
             .contentViewController = services_.makeContent({.scanner = services_.scanner}),
             .autosaveName = "TarnbeckSettingsWindow",
             .delegate = this},
            services_.windows);
    }
    SettingsWindowFactory::present(*window_, services_.windows);
}

void SettingsWindowController::dropWindow() {
    if (window_) window_->setDelegate(nullptr);
    window_.reset();
    closedWindow_.reset();
}

void SettingsWindowController::windowWillClose() {
    if (!window_) return;
    window_->setDelegate(nullptr);
    // It may be in the middle of a call of its own.
    closedWindow_ = std::exchange(window_, nullptr);
    services_.loop.post(anchor_.guarded([](auto& self) { self.closedWindow_.reset(); }));
}

}  // namespace tarnbeck
