#include "SettingsWindowController.h"

#include <utility>

namespace tarnbeck {

SettingsWindowController::SettingsWindowController(RepositoryScanner& scanner, MainLoop& loop,
                                                   MakeWindow makeWindow)
    : scanner_(scanner), loop_(loop), makeWindow_(std::move(makeWindow)) {}

void SettingsWindowController::show() {
    if (!window_) {
        window_ = makeWindow_({
            .scanner = scanner_,
            .windowWillClose = anchor_.guarded([](auto& self) { self.windowWillClose(); }),
        });
    }
    window_->present();
}

void SettingsWindowController::windowWillClose() {
    // It may be in the middle of a call of its own.
    loop_.post([window = std::exchange(window_, nullptr)] {});
}

}  // namespace tarnbeck
