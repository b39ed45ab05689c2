// An Expo project pins packages to the versions of its SDK, so that a newer version is often no
// update at all. Which ones those are is asked of Expo's own tool.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "DependencyStatus.h"
#include "DependencyTools.h"

namespace tarnbeck::DependencyScanner {

struct ExpoCompatibilityIssue {
    std::string package;  // as printed
    std::string installedVersion;
    std::string expectedVersion;  // a version or a range, which may contain blanks

    bool operator==(const ExpoCompatibilityIssue&) const = default;
};

// By the package's name in lower case, without white space at its ends.
using ExpoCompatibilityIssues = std::map<std::string, ExpoCompatibilityIssue>;

struct ExpoCheck {
    std::vector<DependencyUpdate> updates;
    std::string projectPath;
    std::string manager;
};
struct ExpoMarkedUpdates {
    std::vector<DependencyUpdate> updates;
    std::vector<std::string> blockedReasons;  // sorted, each once

    bool operator==(const ExpoMarkedUpdates&) const = default;
};
// Blocks the updates that the SDK doesn't want, and adds packages that are at another version than
// it expects. A project that doesn't declare "expo" runs nothing, and neither that nor any failure
// changes the updates. Blocks, never from the main thread; any number of threads at once.
ExpoMarkedUpdates markBlockedNodeUpdatesForExpo(const DependencyTools& tools, ExpoCheck check);

// Whether the manifest names a version of "expo" as any kind of dependency. Reads it; any thread.
bool declaresExpo(const std::string& projectPath);

// The command that brings a project to the versions of its SDK. Pure.
std::vector<std::string> expoFixArguments(std::string_view manager);

// The lines such as "react@18.2.0 - expected version: 18.3.1"; of several for a package the last.
// Pure.
ExpoCompatibilityIssues parseExpoInstallCheckIssues(std::string_view text);

// Absent for an empty list. Pure.
std::optional<std::string> expoBlockedUpdatesMessage(
    const std::vector<std::string>& blockedReasons);

}  // namespace tarnbeck::DependencyScanner
