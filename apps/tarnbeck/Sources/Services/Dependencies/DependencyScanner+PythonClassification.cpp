#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "DependencyScanner+PythonClassification.h"
#include "DependencyScanner+PythonRequirements.h"
#include "DependencyScanner+Reports.h"
#include "FileSystem.h"
#include "Json.h"
#include "PythonPrograms.h"
#include "Text.h"

namespace tarnbeck::DependencyScanner {
namespace {

// Absent when a text is not UTF-8: JSON would tell another one.
std::optional<std::string> jsonArrayOf(const std::vector<std::string>& texts) {
    if (!std::ranges::all_of(texts, isValidUtf8)) return std::nullopt;
    JsonArray array;
    for (const std::string& text : texts) array.emplace_back(text);
    return jsonText(array);
}

std::string blockingQuestion(const std::vector<DependencyUpdate>& updates) {
    JsonArray array;
    for (const DependencyUpdate& update : updates) {
        array.emplace_back(
            JsonObject{{"package", update.package}, {"latest", update.latestVersion}});
    }
    return jsonText(array);
}

// What the blocking program finds; absent when it can't be asked.
std::optional<PythonBlockedPackages> blockedPackages(const DependencyTools& tools,
                                                     const std::vector<DependencyUpdate>& updates,
                                                     const PythonEnvironment& environment) {
    std::vector<std::string> args = {"-c", std::string(PythonPrograms::blocking),
                                     blockingQuestion(updates)};
    const auto files = pythonConstraintFiles(environment.projectPath);
    if (!files.empty()) {
        auto json = jsonArrayOf(files);
        if (!json) return std::nullopt;
        args.push_back(*std::move(json));
    }
    const CommandResult told = tools.runCommand({.executable = environment.pythonExecutable,
                                                 .args = std::move(args),
                                                 .cwd = environment.projectPath,
                                                 .timeout = tools.timeouts.pythonBlocked});
    if (told.terminationStatus != 0) return std::nullopt;
    return parsePythonBlockedPackagesJSON(told.stdout);
}

std::optional<std::string> pythonTextField(const JsonObject& object, std::string_view key) {
    const JsonValue* value = object.if_contains(key);
    if (!value || !value->is_string()) return std::nullopt;
    return std::string(std::string_view(value->get_string()));
}

std::string_view driftLabel(const std::vector<DependencyUpdate>& updates) {
    const auto any = [&](std::initializer_list<DependencyUpdateOrigin> origins) {
        return std::ranges::any_of(updates, [&](const DependencyUpdate& update) {
            return std::ranges::find(origins, update.origin) != origins.end();
        });
    };
    const bool ofManifest =
        any({DependencyUpdateOrigin::manifestDirect, DependencyUpdateOrigin::manifestTransitive});
    const bool ofEnvironment = any({DependencyUpdateOrigin::venvOnly});
    if (ofManifest && ofEnvironment) return "manifest + venv sources";
    if (ofManifest) return "manifest-based versions";
    return ofEnvironment ? "venv-based versions" : "resolved sources";
}

}  // namespace

std::vector<std::string> pythonConstraintFiles(const std::string& projectPath) {
    std::vector<std::string> files;
    for (const char* name :
         {"/requirements.txt", "/requirements-dev.txt", "/requirements-housekeeping.txt"}) {
        if (exists(projectPath + name)) files.push_back(projectPath + name);
    }
    return files;
}

MarkedPythonUpdates markBlockedPythonUpdates(const DependencyTools& tools,
                                             std::vector<DependencyUpdate> updates,
                                             const PythonEnvironment& environment) {
    MarkedPythonUpdates marked{.updates = std::move(updates)};
    if (marked.updates.empty()) return marked;
    const auto blocked = blockedPackages(tools, marked.updates, environment);
    if (!blocked) return marked;
    for (DependencyUpdate& update : marked.updates) {
        if (blocked->contains(normalizedPythonName(update.package))) {
            update.updateType = DependencyUpdateType::blocked;
        }
    }
    for (const auto& [name, reason] : *blocked) marked.blockedReasons.push_back(reason);
    marked.blockedReasons = sortedUnique(std::move(marked.blockedReasons));
    return marked;
}

std::optional<PythonBlockedPackages> parsePythonBlockedPackagesJSON(std::string_view text) {
    const Result<JsonValue> json = parsedJson(text);
    const JsonObject* answer = json ? json->if_object() : nullptr;
    const JsonValue* blocked = answer ? answer->if_contains("blocked") : nullptr;
    if (!blocked || !blocked->is_array()) return std::nullopt;
    PythonBlockedPackages packages;
    for (const JsonValue& value : blocked->get_array()) {
        const JsonObject* entry = value.if_object();
        if (!entry) return std::nullopt;
        const auto package = pythonTextField(*entry, "package");
        const auto latest = pythonTextField(*entry, "latest");
        const auto reason = pythonTextField(*entry, "reason");
        if (!package || !latest || !reason) continue;
        packages[normalizedPythonName(*package)] =
            fmt::format("{}=={} blocked: {}", *package, *latest, *reason);
    }
    return packages;
}

PythonOriginMap classifyPythonUpdateOrigins(const DependencyTools& tools,
                                            const std::vector<DependencyUpdate>& updates,
                                            const PythonEnvironment& environment) {
    PythonOriginMap origins;
    if (updates.empty()) return origins;
    const auto files = pythonConstraintFiles(environment.projectPath);
    std::vector<std::string> packages;
    for (const DependencyUpdate& update : updates) packages.push_back(update.package);
    if (files.empty()) {
        for (const std::string& package : packages) {
            origins[normalizedPythonName(package)] = DependencyUpdateOrigin::venvOnly;
        }
        return origins;
    }
    const auto names = jsonArrayOf(packages);
    const auto paths = jsonArrayOf(files);
    if (!names || !paths) return origins;
    const CommandResult told =
        tools.runCommand({.executable = environment.pythonExecutable,
                          .args = {"-c", std::string(PythonPrograms::origins), *names, *paths},
                          .cwd = environment.projectPath,
                          .timeout = tools.timeouts.pythonOrigins});
    if (told.terminationStatus != 0) return origins;
    return parsePythonOriginMapJSON(told.stdout).value_or(origins);
}

std::optional<PythonOriginMap> parsePythonOriginMapJSON(std::string_view text) {
    const Result<JsonValue> json = parsedJson(text);
    const JsonObject* answer = json ? json->if_object() : nullptr;
    if (!answer) return std::nullopt;
    PythonOriginMap origins;
    for (const auto& [name, value] : *answer) {
        if (!value.is_string()) return std::nullopt;
        origins[name] = fromRawValue<DependencyUpdateOrigin>(std::string_view(value.get_string()))
                            .value_or(DependencyUpdateOrigin::unknown);
    }
    return origins;
}

std::vector<DependencyUpdate> applyPythonUpdateOrigins(std::vector<DependencyUpdate> updates,
                                                       const PythonOriginMap& origins) {
    for (DependencyUpdate& update : updates) {
        const auto origin = origins.find(normalizedPythonName(update.package));
        update.origin = origin == origins.end() ? DependencyUpdateOrigin::unknown : origin->second;
    }
    return updates;
}

std::optional<std::string> pythonManifestDriftMessage(
    std::int64_t driftedPackages, const std::vector<DependencyUpdate>& updates) {
    if (driftedPackages < 1) return std::nullopt;
    return fmt::format("Local virtualenv lags behind requirements for {} package(s); showing {}",
                       driftedPackages, driftLabel(updates));
}

std::optional<std::string> pythonBlockedUpdatesMessage(
    const std::vector<std::string>& blockedReasons) {
    return reasonsMessage(blockedReasons, " update(s) blocked by constraints: ");
}

std::optional<std::string> pythonCompositeMessage(std::int64_t driftedPackages,
                                                  const std::vector<std::string>& blockedReasons,
                                                  const std::vector<DependencyUpdate>& updates) {
    return joinDependencyMessages({pythonManifestDriftMessage(driftedPackages, updates),
                                   pythonBlockedUpdatesMessage(blockedReasons)});
}

}  // namespace tarnbeck::DependencyScanner
