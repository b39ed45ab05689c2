#include "TarnbeckApp.h"

#include <utility>

#include "UITestLaunchMode.h"

namespace tarnbeck {

using AppMode = AppConfiguration::AppMode;
using system_awake::CaffeinateController;

TarnbeckApp::TarnbeckApp(Services services)
    : services_(std::move(services)),
      appDelegate_({.runtime = services_.runtime,
                    .platform = services_.platform,
                    .loop = services_.loop,
                    .processName = services_.processName,
                    .setActivationHandler = services_.setActivationHandler,
                    .report = services_.report,
                    .isFirstStart = services_.isFirstStart}) {
    services_.platform.attach(appDelegate_);
    scanner_ = UITestLaunchMode::isEnabled(services_.input) ? services_.makeFixtureScanner()
                                                            : services_.makeScanner();
    caffeinateController_ = std::make_unique<CaffeinateController>(
        services_.caffeinateLauncher, services_.processIdentifier,
        CaffeinateController::Environment{
            .postToMainThread = [&loop = services_.loop](Task task) { loop.post(std::move(task)); },
            .now = [&loop = services_.loop] { return loop.wallNow(); }});
    if (scanner_->configuration().keepAwakeOnLaunch) {
        caffeinateController_->start(system_awake::standardCaffeinateAssertions);
    }
    launchMode_ = resolveLaunchMode(scanner_->configuration().appMode, services_.input);
    menuBarController_ = std::make_unique<MenuBarController>(menuBarServices());
    settingsWindowController_ = std::make_unique<SettingsWindowController>(
        SettingsWindowController::Services{.scanner = *scanner_,
                                           .loop = services_.loop,
                                           .windows = services_.windowPlatform,
                                           .makeContent = services_.makeSettingsContent});
    keepLaunchMode();
    services_.runtime = {.launchMode = launchMode_,
                         .menuBarController = menuBarController_.get(),
                         .settingsWindowController = settingsWindowController_.get(),
                         .caffeinateController = caffeinateController_.get()};
}

TarnbeckApp::~TarnbeckApp() {
    services_.platform.detach();
    services_.runtime = {};
}

MenuBarController::Services TarnbeckApp::menuBarServices() {
    return {.scanner = *scanner_,
            .caffeinateController = *caffeinateController_,
            .loop = services_.loop,
            .platform = services_.platform,
            .popoverPlatform = services_.popoverPlatform,
            .makeHost = services_.makePopoverHost,
            .onOpenSettings = [&runtime = services_.runtime] {
                if (runtime.settingsWindowController) runtime.settingsWindowController->show();
            }};
}

AppMode TarnbeckApp::resolveLaunchMode(AppMode configured, const LaunchInput& input) {
    if (UITestLaunchMode::isEnabled(input)) return AppMode::regular;
    if (input.contains("--app-mode=regular")) return AppMode::regular;
    if (input.contains("--app-mode=menubar")) return AppMode::menuBarOnly;
    return configured;
}

// A switch is meant to last: the next launch without one keeps its mode.
void TarnbeckApp::keepLaunchMode() {
    AppConfiguration configuration = scanner_->configuration();
    if (configuration.appMode == launchMode_) return;
    configuration.appMode = launchMode_;
    scanner_->setConfiguration(std::move(configuration));
    scanner_->saveConfiguration();
}

void TarnbeckApp::openScenes() {
    const MainWindowRootView rootView{.launchMode = launchMode_};
    services_.platform.openWindowGroup({.title = mainWindowTitle,
                                        .width = 1200,
                                        .height = 850,
                                        .showsMainView = rootView.showsMainView()});
    rootView.appeared(services_.platform, services_.loop);
}

}  // namespace tarnbeck
