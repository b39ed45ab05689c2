#include "AppDelegate.h"

#include <chrono>
#include <utility>

#include "AccessoryAppCommandMenu.h"
#include "MainWindowRootView.h"

namespace tarnbeck {

using namespace std::chrono_literals;
namespace AccessoryAppCommandMenu = app_commands::AccessoryAppCommandMenu;

namespace {

// A panel that is being started with the session takes a moment to offer its tray.
constexpr auto graceOfStatusArea = 1s;

}  // namespace

AppDelegate::AppDelegate(Services services) : services_(std::move(services)) {}

bool AppDelegate::isMenuBarOnly() const {
    return services_.runtime.launchMode == AppConfiguration::AppMode::menuBarOnly;
}

void AppDelegate::applicationDidFinishLaunching() {
    DesktopPlatform& platform = services_.platform;
    platform.setActivationPolicy(ActivationPolicy::regular);
    if (isMenuBarOnly()) {
        AccessoryAppCommandMenu::installQuitMenu(
            mainWindowTitle,
            {.processName = services_.processName,
             .setMainMenu = [&platform](const auto& menu) { platform.setMainMenu(menu); }});
    }
    if (services_.runtime.menuBarController) {
        services_.runtime.menuBarController->installStatusItem();
    }
    if (isMenuBarOnly()) {
        platform.setActivationPolicy(ActivationPolicy::accessory);
        appearance_ = services_.loop.after(graceOfStatusArea, [this] { showSomethingAtStart(); });
    } else {
        platform.activateIgnoringOtherApps();
    }
    if (services_.setActivationHandler) {
        services_.setActivationHandler([&runtime = services_.runtime, &platform] {
            runtime.activateFromDuplicateLaunch(platform);
        });
    }
}

// An application that nobody can see is not there. The mode stays what it is.
void AppDelegate::showSomethingAtStart() {
    if (!services_.platform.hasStatusArea()) {
        services_.report("No tray was found for Tarnbeck's icon, so its window is opened instead.");
        services_.platform.showMainWindow();
    } else if (services_.isFirstStart && services_.runtime.menuBarController) {
        services_.runtime.menuBarController->showPopoverUnlessFound();
    }
}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed() {
    return !services_.platform.hasStatusArea();
}

void AppDelegate::applicationWillTerminate() {
    if (services_.runtime.caffeinateController) services_.runtime.caffeinateController->stop();
}

}  // namespace tarnbeck
