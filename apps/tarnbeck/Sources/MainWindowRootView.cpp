#include "MainWindowRootView.h"

namespace tarnbeck {

void MainWindowRootView::appeared(DesktopPlatform& platform, MainLoop& loop) const {
    if (showsMainView()) return;
    loop.post([&platform] {
        if (DesktopWindow* window = mainWindowOf(platform)) window->orderOut();
    });
}

DesktopWindow* mainWindowOf(DesktopPlatform& platform) {
    for (DesktopWindow* window : platform.windows()) {
        if (window->title() == mainWindowTitle) return window;
    }
    return nullptr;
}

}  // namespace tarnbeck
