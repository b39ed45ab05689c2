// What a settings window knows while it is open, and what it shows of that.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "AppConfiguration.h"
#include "SettingsContent.h"

namespace tarnbeck {

// The controls of which there is one. Rows that come and go take identities from `firstOfRows` on.
enum class SettingsControl : SettingsControlId {
    customPath = 1,
    addCustomPath,
    scanDirectories,
    ignorePaths,
    scanForRepos,
    ignoreSelected,
    addSelected,
    showRemoteBranches,
    showTags,
    showIssues,
    scanInterval,
    appMode,
    keepAwakeOnLaunch,
    appBackdropOpacity,
    popoverBackdropOpacity,
    firstOfRows = 1000,
};

struct ConfiguredRepo {
    SettingsControlId id = 0;        // of its row
    SettingsControlId removeId = 0;  // of the button in it
    std::string path;                // as it is stored; may begin with a tilde

    bool operator==(const ConfiguredRepo&) const = default;
};

struct DiscoveredRepo {
    SettingsControlId id = 0;
    std::string path;
    std::string name;
    bool isSelected = false;

    bool operator==(const DiscoveredRepo&) const = default;
};

struct SettingsState {
    std::vector<DiscoveredRepo> discoveredRepos;  // in the order found
    std::string customPath;
    std::vector<ConfiguredRepo> configuredRepoPaths;
    std::string scanDirsText;
    std::string ignorePathsText;
    bool showRemoteBranches = true;
    bool showTags = true;
    bool showIssues = true;
    bool keepAwakeOnLaunch = true;
    std::int64_t scanIntervalMinutes = 30;
    AppConfiguration::AppMode appMode = AppConfiguration::AppMode::menuBarOnly;
    double appBackdropOpacity = 0.78;      // 0 to 1
    double popoverBackdropOpacity = 0.55;  // 0 to 1
    bool hasDiscovered = false;
    bool isDiscoveryScanInProgress = false;
    std::string versionLabel;                  // of the application; empty: none
    std::uint64_t discoveryScanRequestID = 0;  // of the newest scan
    SettingsPane selectedPane = SettingsPane::repositories;

    bool hasSelection() const {
        return std::ranges::any_of(discoveredRepos, &DiscoveredRepo::isSelected);
    }
    bool operator==(const SettingsState&) const = default;
};

// The intervals that can be chosen, in minutes, in the order of the options.
inline constexpr std::array<std::int64_t, 5> scanIntervalOptions{0, 5, 15, 30, 60};

// Pure.
SettingsContent settingsContent(const SettingsState& state);

}  // namespace tarnbeck
