// The verdicts on a repository's Node and Python dependencies: plain records, stored as JSON under
// their field names, and the one health that follows from them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "ImmutableList.h"
#include "Record.h"
#include "TextEnumeration.h"

namespace tarnbeck {

enum class DependencyEcosystem { node, python };

constexpr auto rawValues(DependencyEcosystem /*tag*/) {
    return std::to_array<std::pair<DependencyEcosystem, std::string_view>>({
        {DependencyEcosystem::node, "Node"},
        {DependencyEcosystem::python, "Python"},
    });
}

enum class DependencyHealth {
    checking,          // a check is under way, no verdict yet
    upToDate,          // nothing to do
    syncNeeded,        // what is installed differs from what is asked for; an install fixes it
    constraints,       // newer versions exist, but each needs a changed constraint
    updatesAvailable,  // at least one update can be taken
    notApplicable,     // no project of this kind
    unknown,           // no verdict, and that is no error
    error,             // the check failed
};

constexpr auto rawValues(DependencyHealth /*tag*/) {
    return std::to_array<std::pair<DependencyHealth, std::string_view>>({
        {DependencyHealth::checking, "checking"},
        {DependencyHealth::upToDate, "upToDate"},
        {DependencyHealth::syncNeeded, "syncNeeded"},
        {DependencyHealth::constraints, "constraints"},
        {DependencyHealth::updatesAvailable, "updatesAvailable"},
        {DependencyHealth::notApplicable, "notApplicable"},
        {DependencyHealth::unknown, "unknown"},
        {DependencyHealth::error, "error"},
    });
}

enum class DependencyUpdateType { major, minor, patch, constrained, blocked, unknown };

constexpr auto rawValues(DependencyUpdateType /*tag*/) {
    return std::to_array<std::pair<DependencyUpdateType, std::string_view>>({
        {DependencyUpdateType::major, "major"},
        {DependencyUpdateType::minor, "minor"},
        {DependencyUpdateType::patch, "patch"},
        {DependencyUpdateType::constrained, "constrained"},
        {DependencyUpdateType::blocked, "blocked"},
        {DependencyUpdateType::unknown, "unknown"},
    });
}

enum class DependencyUpdateOrigin { unknown, manifestDirect, manifestTransitive, venvOnly };

constexpr auto rawValues(DependencyUpdateOrigin /*tag*/) {
    return std::to_array<std::pair<DependencyUpdateOrigin, std::string_view>>({
        {DependencyUpdateOrigin::unknown, "unknown"},
        {DependencyUpdateOrigin::manifestDirect, "manifestDirect"},
        {DependencyUpdateOrigin::manifestTransitive, "manifestTransitive"},
        {DependencyUpdateOrigin::venvOnly, "venvOnly"},
    });
}

// One package that is behind.
struct DependencyUpdate {
    DependencyEcosystem ecosystem = DependencyEcosystem::node;
    std::string package;  // as the manager prints it
    std::string currentVersion;
    std::string latestVersion;
    DependencyUpdateType updateType = DependencyUpdateType::unknown;
    DependencyUpdateOrigin origin = DependencyUpdateOrigin::unknown;

    // "Node-react"
    std::string id() const;

    // It can be taken: no constraint and no SDK stands against it.
    bool isActionable() const {
        return updateType != DependencyUpdateType::constrained &&
               updateType != DependencyUpdateType::blocked;
    }

    bool operator==(const DependencyUpdate&) const = default;

    static constexpr auto fields() {
        return std::tuple{
            field("ecosystem", &DependencyUpdate::ecosystem),
            field("package", &DependencyUpdate::package),
            field("currentVersion", &DependencyUpdate::currentVersion),
            field("latestVersion", &DependencyUpdate::latestVersion),
            field("updateType", &DependencyUpdate::updateType),
            field("origin", &DependencyUpdate::origin),
        };
    }
};

// The verdict on one project of one ecosystem.
struct DependencyEcosystemResult {
    DependencyEcosystem ecosystem = DependencyEcosystem::node;
    std::optional<std::string> project;  // relative to the repository's root; absent reads as "."
    std::string manager;
    DependencyHealth status = DependencyHealth::unknown;
    ImmutableList<DependencyUpdate> updates;
    std::optional<std::string> message;  // for the user

    // "Node-apps/web-npm"; without a project "Node-npm-<count of updates>-<message>".
    std::string id() const;

    // Updates that can be taken: all but the constrained and blocked ones.
    std::int64_t actionableUpdateCount() const;
    std::int64_t limitedUpdateCount() const;  // constrained ones
    std::int64_t blockedUpdateCount() const;
    // The one figure to show: the updates that can be taken, or else the others, or else 1 for a
    // needed install.
    std::int64_t headlineCount() const;

    bool operator==(const DependencyEcosystemResult&) const = default;

    static constexpr auto fields() {
        return std::tuple{
            field("ecosystem", &DependencyEcosystemResult::ecosystem),
            field("project", &DependencyEcosystemResult::project),
            field("manager", &DependencyEcosystemResult::manager),
            field("status", &DependencyEcosystemResult::status),
            field("updates", &DependencyEcosystemResult::updates),
            field("message", &DependencyEcosystemResult::message),
        };
    }
};

// The verdict on one repository.
struct DependencySummary {
    ImmutableList<DependencyEcosystemResult> ecosystems;  // one a project, in the scan's order
    std::optional<Date> checkedAt;

    static const DependencySummary notApplicable;  // no ecosystems, never checked

    std::int64_t actionableUpdateCount() const;
    std::int64_t constraintCount() const;  // limited and blocked ones
    std::int64_t majorUpdateCount() const;
    // The one figure to show: the updates that can be taken, or else the others, or else the
    // projects whose status is a needed install (one that only a message tells of is not counted).
    std::int64_t headlineCount() const;
    // A result says so by its status, or by a message that asks for an install.
    bool hasSyncNeeded() const;
    bool hasErrors() const;
    bool hasUnknown() const;
    // One error outweighs all updates, an update all constraints, those a need to sync; an unknown
    // result weighs less than all but good news.
    DependencyHealth status() const;
    // The line beside the repository: "5 updateable (2 major) · 1 blocked · sync needed". Absent
    // where there is nothing to depend on.
    std::optional<std::string> inlineSummary() const;

    bool operator==(const DependencySummary&) const = default;

    static constexpr auto fields() {
        return std::tuple{
            field("ecosystems", &DependencySummary::ecosystems),
            field("checkedAt", &DependencySummary::checkedAt),
        };
    }
};

}  // namespace tarnbeck
