#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <variant>

#include <fmt/format.h>

#include "DependencyInstaller.h"
#include "DependencyScanner+Discovery.h"
#include "DependencyScanner+Expo.h"
#include "DependencyScanner+Node.h"
#include "DependencyScanner+NodeReport.h"
#include "DependencyScanner+Reports.h"
#include "FileSystem.h"
#include "Text.h"

namespace tarnbeck::DependencyScanner {
namespace {

using NodePackages = std::vector<NodeOutdatedPackage>;

// Why there is no list of packages.
struct NodeFailure {
    DependencyHealth status;
    std::string message;
};

constexpr auto nodeManagers = std::to_array<std::string_view>({"pnpm", "npm", "yarn", "bun"});

constexpr auto nodeLockfiles = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"pnpm-lock.yaml", "pnpm"},
    {"package-lock.json", "npm"},
    {"npm-shrinkwrap.json", "npm"},
    {"yarn.lock", "yarn"},
    {"bun.lockb", "bun"},
    {"bun.lock", "bun"},
});

// A member of a pnpm workspace is pnpm's, whatever its own files say.
std::string nodeManager(const ProjectPlace& place, const std::string& project) {
    std::string manager = detectNodeManager(place.projectPath);
    if (manager != "pnpm" && project != "." &&
        DependencyInstaller::isInsidePnpmWorkspace(place.repoPath)) {
        return "pnpm";
    }
    return manager;
}

// The words of a command that printed no report; none when it had nothing to report.
std::variant<NodePackages, NodeFailure> withoutNodeReport(const CommandResult& result,
                                                          std::string words) {
    if (result.terminationStatus == 0) return NodePackages{};
    if (!result.stderr.empty()) words = result.stderr;
    return NodeFailure{.status = DependencyHealth::error, .message = std::move(words)};
}

std::variant<NodePackages, NodeFailure> nodePackagesIn(const CommandResult& result,
                                                       const std::string& manager) {
    if (result.timedOut) {
        return NodeFailure{
            .status = DependencyHealth::error,
            .message = fmt::format("Timeout while checking {} dependencies", manager)};
    }
    if (result.launchError) {
        return NodeFailure{.status = DependencyHealth::unknown, .message = *result.launchError};
    }
    const std::string_view output = trimmingWhitespaceAndNewlines(result.stdout);
    if (output.empty()) {
        return withoutNodeReport(result,
                                 fmt::format("Command failed ({})", result.terminationStatus));
    }
    if (!extractLeadingJSON(output)) {
        return withoutNodeReport(result, std::string(firstCharacters(output, 200)));
    }
    // The status says nothing here: outdated packages make it 1.
    if (auto packages = parseNodeOutdatedPackages(output)) return *std::move(packages);
    return NodeFailure{.status = DependencyHealth::error,
                       .message = fmt::format("Could not parse {} outdated output", manager)};
}

DependencyHealth nodeHealth(const std::vector<DependencyUpdate>& updates,
                            const std::vector<std::string>& syncPackages) {
    const bool anyCanBeTaken = std::ranges::any_of(updates, &DependencyUpdate::isActionable);
    if (anyCanBeTaken) return DependencyHealth::updatesAvailable;
    if (!updates.empty()) return DependencyHealth::constraints;
    return syncPackages.empty() ? DependencyHealth::upToDate : DependencyHealth::syncNeeded;
}

CommandResult nodeOutdatedReport(const DependencyTools& tools, const ProjectPlace& place,
                                 const DependencyEcosystemResult& result) {
    NodeOutdatedInvocation invocation =
        nodeOutdatedInvocation({.manager = result.manager,
                                .repoPath = place.repoPath,
                                .projectPath = place.projectPath,
                                .project = result.project.value_or(".")});
    return tools.runCommand({.executable = "/usr/bin/env",
                             .args = std::move(invocation.args),
                             .cwd = std::move(invocation.cwd),
                             .timeout = tools.timeouts.nodeOutdated});
}

void judgeNode(DependencyEcosystemResult& result, const NodeReconciliation& facts,
               const ExpoMarkedUpdates& marked) {
    std::vector<DependencyUpdate> updates = normalizedNodeUpdates(marked.updates);
    result.status = nodeHealth(updates, facts.syncPackages);
    result.message = joinDependencyMessages({nodeSyncMessage(facts.syncPackages),
                                             nodeConstraintLimitedMessage(facts.constrainedReasons),
                                             expoBlockedUpdatesMessage(marked.blockedReasons)});
    result.updates = std::move(updates);
}

}  // namespace

std::vector<DependencyEcosystemResult> scanNode(const DependencyTools& tools,
                                                const ProjectPlaces& places) {
    std::vector<DependencyEcosystemResult> results;
    for (const std::string& projectPath : standardizedSorted(places.projectPaths)) {
        results.push_back(
            scanNodeProject(tools, {.projectPath = projectPath, .repoPath = places.repoPath}));
    }
    return results;
}

DependencyEcosystemResult scanNodeProject(const DependencyTools& tools, const ProjectPlace& place) {
    const std::string project = relativeProjectPath(place);
    DependencyEcosystemResult result{.ecosystem = DependencyEcosystem::node,
                                     .project = project,
                                     .manager = nodeManager(place, project),
                                     .status = DependencyHealth::unknown};
    if (result.manager == "yarn" || result.manager == "bun") {
        result.message = fmt::format("{} support is not implemented yet",
                                     result.manager == "yarn" ? "Yarn" : "Bun");
        return result;
    }
    const auto packages = nodePackagesIn(nodeOutdatedReport(tools, place, result), result.manager);
    if (const auto* failure = std::get_if<NodeFailure>(&packages)) {
        result.status = failure->status;
        result.message = failure->message;
        return result;
    }
    const auto facts = reconcileNodeOutdatedPackages(std::get<NodePackages>(packages));
    judgeNode(result, facts,
              markBlockedNodeUpdatesForExpo(tools, {.updates = facts.updates,
                                                    .projectPath = place.projectPath,
                                                    .manager = result.manager}));
    return result;
}

std::vector<DependencyEcosystemResult> initialNodeSummaries(const ProjectPlaces& places) {
    std::vector<DependencyEcosystemResult> results;
    for (const std::string& projectPath : standardizedSorted(places.projectPaths)) {
        results.push_back({.ecosystem = DependencyEcosystem::node,
                           .project = relativeProjectPath(
                               {.projectPath = projectPath, .repoPath = places.repoPath}),
                           .manager = detectNodeManager(projectPath),
                           .status = DependencyHealth::checking});
    }
    return results;
}

std::string detectNodeManager(const std::string& projectPath) {
    const std::string declared = packageManagerField(projectPath).value_or("");
    for (const std::string_view manager : nodeManagers) {
        if (declared.starts_with(fmt::format("{}@", manager))) return std::string(manager);
    }
    for (const auto& [lockfile, manager] : nodeLockfiles) {
        if (exists(fmt::format("{}/{}", projectPath, lockfile))) return std::string(manager);
    }
    return "npm";
}

std::optional<std::string> packageManagerField(const std::string& projectPath) {
    const auto manifest = jsonObjectInFile(projectPath + "/package.json");
    if (!manifest) return std::nullopt;
    const JsonValue* value = manifest->if_contains("packageManager");
    if (!value || !value->is_string()) return std::nullopt;
    return std::string(value->get_string().c_str(), value->get_string().size());
}

NodeOutdatedInvocation nodeOutdatedInvocation(const NodeOutdatedQuestion& question) {
    if (question.manager == "pnpm") {
        if (question.project != "." &&
            DependencyInstaller::isInsidePnpmWorkspace(question.repoPath)) {
            return {.args = {"pnpm", "outdated", "--json", "--filter",
                             fmt::format("./{}...", question.project)},
                    .cwd = question.repoPath};
        }
        return {.args = {"pnpm", "outdated", "--json"}, .cwd = question.projectPath};
    }
    if (question.manager == "npm") {
        return {.args = {"npm", "outdated", "--json"}, .cwd = question.projectPath};
    }
    return {.args = {"npm", "outdated", "--json", "--long"}, .cwd = question.projectPath};
}

}  // namespace tarnbeck::DependencyScanner
