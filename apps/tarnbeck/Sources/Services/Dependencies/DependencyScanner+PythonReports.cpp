#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "DependencyScanner+PythonReports.h"
#include "DependencyScanner+Reports.h"
#include "DependencyVersion.h"
#include "Json.h"

namespace tarnbeck::DependencyScanner {
namespace {

constexpr std::array<std::string_view, 3> pythonNameKeys = {"name", "package", "depName"};
constexpr std::array<std::string_view, 5> pythonCurrentKeys = {
    "current", "version", "currentVersion", "installed", "from"};
constexpr std::array<std::string_view, 5> pythonLatestKeys = {"latest", "latestVersion",
                                                              "latest_version", "wanted", "to"};

// The step that an entry tells of; absent where a version is missing or both are the same.
std::optional<DependencyUpdate> outdatedPackage(std::string name, const JsonObject& entry,
                                                DependencyEcosystem ecosystem) {
    auto current = firstField(entry, pythonCurrentKeys);
    auto latest = firstField(entry, pythonLatestKeys);
    if (!current || !latest || *current == *latest) return std::nullopt;
    const DependencyUpdateType type = infer({.current = *current, .latest = *latest});
    return DependencyUpdate{.ecosystem = ecosystem,
                            .package = std::move(name),
                            .currentVersion = *std::move(current),
                            .latestVersion = *std::move(latest),
                            .updateType = type,
                            .origin = DependencyUpdateOrigin::unknown};
}

std::vector<DependencyUpdate> parseDictionaryPayload(const JsonObject& report,
                                                     DependencyEcosystem ecosystem) {
    std::vector<DependencyUpdate> updates;
    for (const auto& [name, value] : report) {
        const JsonObject* entry = value.if_object();
        if (!entry) continue;
        auto update = outdatedPackage(name, *entry, ecosystem);
        if (!update || isOlder(update->latestVersion, update->currentVersion)) continue;
        updates.push_back(*std::move(update));
    }
    std::ranges::sort(updates, {}, &DependencyUpdate::package);
    return updates;
}

std::optional<std::vector<DependencyUpdate>> parseArrayPayload(const JsonArray& report,
                                                               DependencyEcosystem ecosystem) {
    std::vector<DependencyUpdate> updates;
    for (const JsonValue& value : report) {
        const JsonObject* entry = value.if_object();
        if (!entry) return std::nullopt;
        auto name = firstField(*entry, pythonNameKeys);
        if (!name) continue;
        auto update = outdatedPackage(*std::move(name), *entry, ecosystem);
        if (update) updates.push_back(*std::move(update));
    }
    return updates;
}

}  // namespace

std::optional<std::vector<DependencyUpdate>> parseOutdatedJSON(std::string_view text,
                                                               DependencyEcosystem ecosystem) {
    const Result<JsonValue> json = parsedJson(text);
    if (!json) return std::nullopt;
    if (const JsonObject* report = json->if_object()) {
        return parseDictionaryPayload(*report, ecosystem);
    }
    if (const JsonArray* report = json->if_array()) return parseArrayPayload(*report, ecosystem);
    return std::nullopt;
}

std::vector<DependencyUpdate> normalizedPythonUpdates(std::vector<DependencyUpdate> updates) {
    std::erase_if(updates, [](const DependencyUpdate& update) {
        return update.currentVersion == update.latestVersion ||
               isOlder(update.latestVersion, update.currentVersion);
    });
    return updates;
}

}  // namespace tarnbeck::DependencyScanner
