// The application value: owns the long-lived objects for the life of the process, and makes them in
// a fixed order. Main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "AppDelegate.h"
#include "AppRuntime.h"
#include "CaffeinateController.h"
#include "DesktopPlatform.h"
#include "LaunchInput.h"
#include "MainLoop.h"
#include "MainWindowRootView.h"
#include "MenuBarController.h"
#include "RepositoryScanner.h"
#include "SettingsWindowController.h"

namespace tarnbeck {

class TarnbeckApp {
  public:
    // All must outlive it.
    struct Services {
        const LaunchInput& input;
        MainLoop& loop;
        DesktopPlatform& platform;
        menubar_popover::PopoverPlatform& popoverPlatform;
        AppRuntime& runtime;
        std::function<std::unique_ptr<RepositoryScanner>()> makeScanner;
        std::function<std::unique_ptr<RepositoryScanner>()> makeFixtureScanner;
        system_awake::CaffeinateLaunching& caffeinateLauncher;
        std::int32_t processIdentifier = 0;
        std::function<std::unique_ptr<PopoverHost>(menubar_popover::Popover&)> makePopoverHost;
        settings_window::WindowPlatform& windowPlatform;
        SettingsWindowController::MakeContent makeSettingsContent;
        std::string processName;
        std::function<void(std::function<void()> handler)> setActivationHandler;
        std::function<void(std::string_view message)> report;
        bool isFirstStart = false;  // there is no configuration yet
    };
    explicit TarnbeckApp(Services services);
    // Nothing leads to its objects any more when they go.
    ~TarnbeckApp();
    TarnbeckApp(const TarnbeckApp&) = delete;
    TarnbeckApp& operator=(const TarnbeckApp&) = delete;

    // The mode of this run: fixtures and switches come before what is configured.
    static AppConfiguration::AppMode resolveLaunchMode(AppConfiguration::AppMode configured,
                                                       const LaunchInput& input);

    // The main window, once; before the platform says that the application has been launched.
    void openScenes();

    AppConfiguration::AppMode launchMode() const { return launchMode_; }
    RepositoryScanner& scanner() { return *scanner_; }
    system_awake::CaffeinateController& caffeinateController() { return *caffeinateController_; }
    MenuBarController& menuBarController() { return *menuBarController_; }
    SettingsWindowController& settingsWindowController() { return *settingsWindowController_; }

  private:
    void keepLaunchMode();
    MenuBarController::Services menuBarServices();

    const Services services_;
    AppDelegate appDelegate_;
    std::unique_ptr<RepositoryScanner> scanner_;
    std::unique_ptr<system_awake::CaffeinateController> caffeinateController_;
    AppConfiguration::AppMode launchMode_ = AppConfiguration::AppMode::menuBarOnly;
    std::unique_ptr<MenuBarController> menuBarController_;
    std::unique_ptr<SettingsWindowController> settingsWindowController_;
};

}  // namespace tarnbeck
