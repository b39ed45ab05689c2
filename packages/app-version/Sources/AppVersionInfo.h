// Which version of an application runs.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <variant>

namespace app_version {

using WallTime = std::chrono::system_clock::time_point;

// What is known of an application: where there are bundles, the content of their information file;
// elsewhere, values of the same names.
struct Bundle {
    using Value = std::variant<std::string, double, bool>;

    std::map<std::string, Value> info;
    std::string executablePath;
};

// The path of the running program; empty where the system does not tell.
std::string runningExecutablePath();

struct AppVersionInfo {
    std::string shortVersion;
    std::string buildVersion;
    std::optional<WallTime> buildDate;

    bool operator==(const AppVersionInfo&) const = default;

    // The versions are the texts under "CFBundleShortVersionString" and "CFBundleVersion", or "0";
    // the date is that of the executable's last change, so that no build step is needed for it.
    static AppVersionInfo current(const Bundle& bundle);

    // In the user's time zone.
    std::string displayLabel() const;
};

}  // namespace app_version
