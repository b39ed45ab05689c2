#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <set>
#include <span>
#include <utility>

#include <fmt/format.h>

#include "DependencyScanner+NodeReport.h"
#include "DependencyScanner+Reports.h"
#include "DependencyVersion.h"
#include "Json.h"
#include "Text.h"

namespace tarnbeck::DependencyScanner {
namespace {

constexpr auto nodeNameKeys = std::to_array<std::string_view>({"name", "package", "depName"});
constexpr auto nodeCurrentKeys =
    std::to_array<std::string_view>({"current", "version", "currentVersion", "installed", "from"});
constexpr auto nodeWantedKeys = std::to_array<std::string_view>({"wanted", "wantedVersion"});
constexpr auto nodeLatestKeys =
    std::to_array<std::string_view>({"latest", "latestVersion", "latest_version", "to"});

// Nothing for an entry without an installed version.
std::optional<NodeOutdatedPackage> nodePackage(std::string name, const JsonObject& entry) {
    auto current = firstField(entry, nodeCurrentKeys);
    if (!current) return std::nullopt;
    return NodeOutdatedPackage{.package = std::move(name),
                               .currentVersion = *std::move(current),
                               .wantedVersion = firstField(entry, nodeWantedKeys),
                               .latestVersion = firstField(entry, nodeLatestKeys)};
}

std::vector<NodeOutdatedPackage> nodePackagesByName(const JsonObject& report) {
    std::vector<NodeOutdatedPackage> packages;
    for (const auto& [name, entry] : report) {
        if (!entry.is_object()) continue;
        if (auto package = nodePackage(name, entry.get_object())) packages.push_back(*package);
    }
    std::ranges::sort(packages, {}, &NodeOutdatedPackage::package);
    return packages;
}

std::optional<std::vector<NodeOutdatedPackage>> nodePackagesInList(const JsonArray& report) {
    std::vector<NodeOutdatedPackage> packages;
    for (const JsonValue& entry : report) {
        if (!entry.is_object()) return std::nullopt;
        auto name = firstField(entry.get_object(), nodeNameKeys);
        if (!name) continue;
        if (auto package = nodePackage(*std::move(name), entry.get_object())) {
            packages.push_back(*std::move(package));
        }
    }
    return packages;
}

std::optional<std::string> trimmedVersion(const std::optional<std::string>& version) {
    if (!version) return std::nullopt;
    return std::string(trimmingWhitespaceAndNewlines(*version));
}

// Sorts packages, one after the other, into what can be done about them.
class NodeReconciler {
  public:
    void add(const NodeOutdatedPackage& package) {
        name_ = package.package;
        current_ = trimmingWhitespaceAndNewlines(package.currentVersion);
        const auto wanted = trimmedVersion(package.wantedVersion);
        const auto latest = trimmedVersion(package.latestVersion);
        if (!wanted) {
            if (latest) offer(*latest);
        } else if (latest && *latest != *wanted) {
            addWithinRange(*wanted, *latest);
        } else if (isBehind(*wanted)) {
            found_.syncPackages.push_back(name_);  // an install alone brings it to the newest
        } else {
            offer(latest.value_or(*wanted));
        }
    }

    NodeReconciliation take() {
        found_.syncPackages = sortedUnique(std::move(found_.syncPackages));
        found_.constrainedReasons = sortedUnique(std::move(found_.constrainedReasons));
        return std::move(found_);
    }

  private:
    // The range stops short of the newest version.
    void addWithinRange(const std::string& wanted, const std::string& latest) {
        if (isOlder(latest, current_)) return;  // the registry lies behind what is installed
        if (isBehind(wanted)) {
            found_.syncPackages.push_back(name_);
            addReason(wanted, latest);
        } else if (wanted == current_) {
            addReason(wanted, latest);
            addUpdate(latest, DependencyUpdateType::constrained);
        } else {
            offer(latest);  // a range that lies behind what is installed limits nothing
        }
    }

    bool isBehind(const std::string& wanted) const {
        return wanted != current_ && !isOlder(wanted, current_);
    }

    void offer(const std::string& target) {
        if (target == current_ || isOlder(target, current_)) return;
        addUpdate(target, infer({.current = current_, .latest = target}));
    }

    void addUpdate(const std::string& target, DependencyUpdateType type) {
        found_.updates.push_back({.ecosystem = DependencyEcosystem::node,
                                  .package = name_,
                                  .currentVersion = current_,
                                  .latestVersion = target,
                                  .updateType = type});
    }

    void addReason(const std::string& wanted, const std::string& latest) {
        found_.constrainedReasons.push_back(
            fmt::format("{}@{} limited by current constraints (wanted {})", name_, latest, wanted));
    }

    std::string name_;  // of the package at hand, as the next
    std::string current_;
    NodeReconciliation found_;
};

bool leadsNodeForward(const DependencyUpdate& update) {
    if (update.updateType == DependencyUpdateType::blocked) return true;
    return update.currentVersion != update.latestVersion &&
           !isOlder(update.latestVersion, update.currentVersion);
}

}  // namespace

std::optional<std::string> extractLeadingJSON(std::string_view text) {
    while (true) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmingBlanksAndTabs(text.substr(0, end));
        if (line.starts_with('{') || line.starts_with('[')) return std::string(text);
        if (end == std::string_view::npos) return std::nullopt;
        text.remove_prefix(end + 1);
    }
}

std::optional<std::vector<NodeOutdatedPackage>> parseNodeOutdatedPackages(std::string_view text) {
    const auto report = extractLeadingJSON(text);
    if (!report) return std::nullopt;
    const Result<JsonValue> json = parsedJson(*report);
    if (!json) return std::nullopt;
    if (const JsonObject* byName = json->if_object()) return nodePackagesByName(*byName);
    if (const JsonArray* list = json->if_array()) return nodePackagesInList(*list);
    return std::nullopt;
}

NodeReconciliation reconcileNodeOutdatedPackages(const std::vector<NodeOutdatedPackage>& packages) {
    NodeReconciler reconciler;
    for (const NodeOutdatedPackage& package : packages) reconciler.add(package);
    return reconciler.take();
}

std::vector<DependencyUpdate> normalizedNodeUpdates(const std::vector<DependencyUpdate>& updates) {
    std::vector<DependencyUpdate> kept;
    std::set<std::string> seen;
    for (const DependencyUpdate& update : updates) {
        if (seen.insert(update.id()).second && leadsNodeForward(update)) kept.push_back(update);
    }
    return kept;
}

std::optional<std::string> nodeSyncMessage(const std::vector<std::string>& syncPackages) {
    if (syncPackages.empty()) return std::nullopt;
    const auto shown = std::min<std::ptrdiff_t>(std::ssize(syncPackages), 2);
    std::vector<std::string> names(syncPackages.begin(), syncPackages.begin() + shown);
    if (std::ssize(syncPackages) > shown) {
        names.push_back(fmt::format("+{} more", std::ssize(syncPackages) - shown));
    }
    return fmt::format(
        "Local install lags behind wanted versions for {} package(s): {}. Run install to sync.",
        syncPackages.size(), joined(names, ", "));
}

std::optional<std::string> nodeConstraintLimitedMessage(
    const std::vector<std::string>& constrainedReasons) {
    return reasonsMessage(constrainedReasons, " update(s) limited by current constraints: ");
}

}  // namespace tarnbeck::DependencyScanner
