#include "SettingsWindowFactory.h"

#include <utility>

namespace settings_window {

std::shared_ptr<Window> SettingsWindowFactory::makeWindow(MakeWindow request,
                                                          WindowPlatform& platform) {
    auto window = platform.makeWindow({.origin = {}, .size = request.size}, request.styleMask);
    window->setTitle(request.title);
    window->setReleasedWhenClosed(false);
    window->center();
    if (request.contentView) window->setContentView(std::move(request.contentView));
    if (request.contentViewController) {
        window->setContentViewController(std::move(request.contentViewController));
    }
    window->setDelegate(request.delegate);
    // Behind the centring, over which a saved frame wins.
    if (request.autosaveName) window->setFrameAutosaveName(*request.autosaveName);
    return window;
}

void SettingsWindowFactory::present(Window& window, WindowPlatform& platform) {
    window.makeKeyAndOrderFront();
    platform.activateIgnoringOtherApplications();
}

}  // namespace settings_window
