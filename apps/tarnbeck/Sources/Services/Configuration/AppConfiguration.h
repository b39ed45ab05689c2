// The user's whole persistent configuration: `.config/tarnbeck/config.json` under the home, one
// JSON object. Reading is tolerant: what is missing takes its default.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "Record.h"
#include "Result.h"
#include "TextEnumeration.h"

namespace tarnbeck {

// Where the configuration lives, and to whom its failures are told.
struct ConfigurationPlace {
    std::string home;
    // Gets one line without a line feed: "Failed to load config: …".
    std::function<void(std::string_view message)> report;

    std::string folder() const { return home + "/.config/tarnbeck"; }
    std::string file() const { return folder() + "/config.json"; }
    // The last file that could not be read, kept when it had to be replaced.
    std::string brokenFile() const { return file() + ".broken"; }
};

struct AppConfiguration {
    enum class AppMode { menuBarOnly, regular };

    std::vector<std::string> repoPaths;  // may begin with a tilde
    std::vector<std::string> scanDirectories = {"~/projects"};
    std::vector<std::string> discoveryIgnorePaths;
    std::int64_t scanIntervalMinutes = 30;  // below 1: no periodic scan
    bool showRemoteBranches = true;
    bool showTags = true;
    bool showDirtyCountInMenuBar = true;
    bool showIssues = true;
    bool keepAwakeOnLaunch = true;
    bool gitHubBridgeMonitoringEnabled = false;
    bool showRunnerMonitoring = true;
    std::vector<std::string> runnerRepoSlugs;  // "owner/repo"
    std::string runnerNamePrefix;
    std::int64_t runnerRefreshIntervalSeconds = 10;
    AppMode appMode = AppMode::menuBarOnly;
    double appBackdropOpacity = 0.78;      // 0 to 1
    double popoverBackdropOpacity = 0.55;  // 0 to 1

    // The configuration in the file; the default one when there is no file or it can't be read,
    // which is reported as "Failed to load config: <error>". Never fails. Blocks on the disk.
    static AppConfiguration load(const ConfigurationPlace& place);

    // The configuration that the bytes of a file hold, or why they hold none. One value of a wrong
    // type fails the whole; opacities are brought into their range. Pure.
    static Result<AppConfiguration> decoded(std::string_view bytes);

    // Replaces the file atomically; false, and "Failed to save config: <error>", when that fails.
    // A file that can't be read as a configuration is first kept beside it, as
    // `config.json.broken`. Blocks on the disk.
    bool save(const ConfigurationPlace& place) const;

    // Drops each repository path that, with its tilde expanded, stands earlier in the list.
    void dropRepeatedRepoPaths(std::string_view home);

    bool operator==(const AppConfiguration&) const = default;
    static constexpr auto fields() {
        using Self = AppConfiguration;
        return std::tuple{
            field("repoPaths", &Self::repoPaths),
            field("scanDirectories", &Self::scanDirectories),
            field("discoveryIgnorePaths", &Self::discoveryIgnorePaths),
            field("scanIntervalMinutes", &Self::scanIntervalMinutes),
            field("showRemoteBranches", &Self::showRemoteBranches),
            field("showTags", &Self::showTags),
            field("showDirtyCountInMenuBar", &Self::showDirtyCountInMenuBar),
            field("showIssues", &Self::showIssues),
            field("keepAwakeOnLaunch", &Self::keepAwakeOnLaunch),
            field("gitHubBridgeMonitoringEnabled", &Self::gitHubBridgeMonitoringEnabled),
            field("showRunnerMonitoring", &Self::showRunnerMonitoring),
            field("runnerRepoSlugs", &Self::runnerRepoSlugs),
            field("runnerNamePrefix", &Self::runnerNamePrefix),
            field("runnerRefreshIntervalSeconds", &Self::runnerRefreshIntervalSeconds),
            field("appMode", &Self::appMode),
            field("appBackdropOpacity", &Self::appBackdropOpacity),
            field("popoverBackdropOpacity", &Self::popoverBackdropOpacity),
        };
    }
};

constexpr auto rawValues(AppConfiguration::AppMode /*tag*/) {
    return std::to_array<std::pair<AppConfiguration::AppMode, std::string_view>>({
        {AppConfiguration::AppMode::menuBarOnly, "menuBarOnly"},
        {AppConfiguration::AppMode::regular, "regular"},
    });
}

}  // namespace tarnbeck
