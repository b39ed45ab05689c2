// What a Node manager's report of outdated packages says. Three versions of each package
// (installed, wanted by the declared range, newest in the registry) become three facts: what can be
// updated, what its range holds back, and what is merely not installed yet. Pure; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "DependencyStatus.h"

namespace tarnbeck::DependencyScanner {

// One entry of a report, as printed.
struct NodeOutdatedPackage {
    std::string package;
    std::string currentVersion;                // what is installed
    std::optional<std::string> wantedVersion;  // the highest that the declared range allows
    std::optional<std::string> latestVersion;  // the newest in the registry

    bool operator==(const NodeOutdatedPackage&) const = default;
};

// From the first line that begins with a brace or a bracket (blanks and tabs before it don't count)
// to the end: managers and wrappers print warnings first. Absent without such a line. Lines end at
// line feeds only.
std::optional<std::string> extractLeadingJSON(std::string_view text);

// The packages of a report: an object from name to fields, read in ascending order of the names, or
// a list of objects. Absent when it is neither; entries without an installed version are passed
// over.
std::optional<std::vector<NodeOutdatedPackage>> parseNodeOutdatedPackages(std::string_view text);

struct NodeReconciliation {
    std::vector<DependencyUpdate> updates;  // in the order of the report
    std::vector<std::string> syncPackages;  // behind what their range allows; sorted, each once
    std::vector<std::string> constrainedReasons;  // sorted, each once

    bool operator==(const NodeReconciliation&) const = default;
};
NodeReconciliation reconcileNodeOutdatedPackages(const std::vector<NodeOutdatedPackage>& packages);

// The first update of each id, without those that lead nowhere or back. Blocked ones stay whatever
// their versions say.
std::vector<DependencyUpdate> normalizedNodeUpdates(const std::vector<DependencyUpdate>& updates);

// Both absent for an empty list.
std::optional<std::string> nodeSyncMessage(const std::vector<std::string>& syncPackages);
std::optional<std::string> nodeConstraintLimitedMessage(
    const std::vector<std::string>& constrainedReasons);

}  // namespace tarnbeck::DependencyScanner
