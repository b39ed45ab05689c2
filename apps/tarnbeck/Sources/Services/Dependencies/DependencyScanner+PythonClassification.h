// Which outdated Python packages could not be updated without breaking another one, where each
// comes from, and the words for both. Nothing here fails: what can't be found out leaves the
// updates as they are. Unless it says otherwise, pure; any thread.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "DependencyStatus.h"
#include "DependencyTools.h"

namespace tarnbeck::DependencyScanner {

// Both by normalized name.
using PythonBlockedPackages = std::map<std::string, std::string, std::less<>>;
using PythonOriginMap = std::map<std::string, DependencyUpdateOrigin, std::less<>>;

struct PythonEnvironment {
    std::string pythonExecutable;
    std::string projectPath;
};

struct MarkedPythonUpdates {
    std::vector<DependencyUpdate> updates;
    std::vector<std::string> blockedReasons;  // each once, sorted
};

// The requirement files of a project, absolute. Asks the disk.
std::vector<std::string> pythonConstraintFiles(const std::string& projectPath);

// Makes those updates `blocked` that an installed package forbids. Runs the interpreter: blocks,
// never from the main thread.
MarkedPythonUpdates markBlockedPythonUpdates(const DependencyTools& tools,
                                             std::vector<DependencyUpdate> updates,
                                             const PythonEnvironment& environment);
// The reason against each package in the program's answer; absent for what is no such answer.
std::optional<PythonBlockedPackages> parsePythonBlockedPackagesJSON(std::string_view text);

// Whether the manifest names or needs each update. Runs the interpreter where there is a manifest:
// blocks, never from the main thread.
PythonOriginMap classifyPythonUpdateOrigins(const DependencyTools& tools,
                                            const std::vector<DependencyUpdate>& updates,
                                            const PythonEnvironment& environment);
std::optional<PythonOriginMap> parsePythonOriginMapJSON(std::string_view text);
// Those without an origin become `unknown`.
std::vector<DependencyUpdate> applyPythonUpdateOrigins(std::vector<DependencyUpdate> updates,
                                                       const PythonOriginMap& origins);

// "Local virtualenv lags behind requirements for 2 package(s); showing manifest-based versions"
std::optional<std::string> pythonManifestDriftMessage(std::int64_t driftedPackages,
                                                      const std::vector<DependencyUpdate>& updates);
std::optional<std::string> pythonBlockedUpdatesMessage(
    const std::vector<std::string>& blockedReasons);
// Both, the drift first.
std::optional<std::string> pythonCompositeMessage(std::int64_t driftedPackages,
                                                  const std::vector<std::string>& blockedReasons,
                                                  const std::vector<DependencyUpdate>& updates);

}  // namespace tarnbeck::DependencyScanner
