// The long-lived objects, for code that can't be handed references. Written once during start-up,
// and emptied at the end. Main thread.
#pragma once

#include "AppConfiguration.h"
#include "CaffeinateController.h"
#include "DesktopPlatform.h"
#include "MenuBarController.h"
#include "SettingsWindowController.h"

namespace tarnbeck {

// One for a process. What it points to is the application's.
struct AppRuntime {
    AppConfiguration::AppMode launchMode = AppConfiguration::AppMode::menuBarOnly;
    MenuBarController* menuBarController = nullptr;
    SettingsWindowController* settingsWindowController = nullptr;
    system_awake::CaffeinateController* caffeinateController = nullptr;

    // What the running copy does when a second one has been started.
    void activateFromDuplicateLaunch(DesktopPlatform& platform) const;
};

}  // namespace tarnbeck
