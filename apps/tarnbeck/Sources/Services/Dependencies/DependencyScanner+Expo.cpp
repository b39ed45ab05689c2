#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include <fmt/format.h>

#include "DependencyScanner+Expo.h"
#include "DependencyScanner+NodeReport.h"
#include "DependencyScanner+Reports.h"
#include "RegularExpression.h"
#include "Text.h"

namespace tarnbeck::DependencyScanner {
namespace {

constexpr auto expoSections =
    std::to_array<std::string_view>({"dependencies", "devDependencies", "peerDependencies"});

std::string trimmedExpo(std::string_view text) {
    return std::string(trimmingWhitespaceAndNewlines(text));
}

std::string expoKey(std::string_view package) {
    return lowercased(trimmingWhitespaceAndNewlines(package));
}

// The issues that the tool finds; none when it fails in any way.
ExpoCompatibilityIssues expoIssues(const DependencyTools& tools, const ExpoCheck& check) {
    std::vector<std::string> arguments = expoFixArguments(check.manager);
    std::ranges::replace(arguments, "--fix", "--check");
    const CommandResult result = tools.runCommand({.executable = "/usr/bin/env",
                                                   .args = std::move(arguments),
                                                   .cwd = check.projectPath,
                                                   .timeout = tools.timeouts.expoCheck});
    std::vector<std::string> streams = {result.stdout, result.stderr};
    std::erase(streams, "");
    return parseExpoInstallCheckIssues(joined(streams, "\n"));
}

// Blocks the updates that lead to another version than the SDK expects, and forgets the issues
// that the manager already knew of.
void blockUnexpectedByExpo(ExpoMarkedUpdates& marked, ExpoCompatibilityIssues& issues) {
    std::set<std::string> seen;
    for (DependencyUpdate& update : marked.updates) {
        const auto issue = issues.find(expoKey(update.package));
        if (issue == issues.end()) continue;
        seen.insert(issue->first);
        const std::string& expected = issue->second.expectedVersion;
        if (trimmedExpo(expected) == trimmedExpo(update.latestVersion)) continue;
        update.updateType = DependencyUpdateType::blocked;
        marked.blockedReasons.push_back(fmt::format(
            "{}@{} blocked: Expo SDK expects {}", update.package, update.latestVersion, expected));
    }
    for (const std::string& key : seen) issues.erase(key);
}

// Packages that the manager doesn't call outdated, and that are wrong for the SDK all the same.
void addUnlistedByManager(ExpoMarkedUpdates& marked, const ExpoCompatibilityIssues& issues) {
    std::vector<ExpoCompatibilityIssue> unlisted;
    for (const auto& [key, issue] : issues) {
        if (trimmedExpo(issue.installedVersion) != trimmedExpo(issue.expectedVersion)) {
            unlisted.push_back(issue);
        }
    }
    std::ranges::sort(unlisted, {}, &ExpoCompatibilityIssue::package);
    for (const ExpoCompatibilityIssue& issue : unlisted) {
        marked.updates.push_back({.ecosystem = DependencyEcosystem::node,
                                  .package = issue.package,
                                  .currentVersion = issue.installedVersion,
                                  .latestVersion = issue.expectedVersion,
                                  .updateType = DependencyUpdateType::blocked});
        marked.blockedReasons.push_back(fmt::format("{}=={} blocked: Expo SDK expects {}",
                                                    issue.package, issue.installedVersion,
                                                    issue.expectedVersion));
    }
}

}  // namespace

ExpoMarkedUpdates markBlockedNodeUpdatesForExpo(const DependencyTools& tools, ExpoCheck check) {
    ExpoCompatibilityIssues issues;
    if (declaresExpo(check.projectPath)) issues = expoIssues(tools, check);
    ExpoMarkedUpdates marked{.updates = std::move(check.updates)};
    if (issues.empty()) return marked;
    blockUnexpectedByExpo(marked, issues);
    addUnlistedByManager(marked, issues);
    marked.updates = normalizedNodeUpdates(marked.updates);
    marked.blockedReasons = sortedUnique(std::move(marked.blockedReasons));
    return marked;
}

bool declaresExpo(const std::string& projectPath) {
    const auto manifest = jsonObjectInFile(projectPath + "/package.json");
    if (!manifest) return false;
    return std::ranges::any_of(expoSections, [&](std::string_view section) {
        const JsonValue* dependencies = manifest->if_contains(section);
        if (!dependencies || !dependencies->is_object()) return false;
        const JsonValue* expo = dependencies->get_object().if_contains("expo");
        return expo && expo->is_string() && !expo->get_string().empty();
    });
}

std::vector<std::string> expoFixArguments(std::string_view manager) {
    std::vector<std::string> arguments = {"npx", "expo", "install", "--fix"};
    if (manager == "pnpm" || manager == "npm" || manager == "bun") {
        arguments.push_back(fmt::format("--{}", manager));
    }
    return arguments;
}

ExpoCompatibilityIssues parseExpoInstallCheckIssues(std::string_view text) {
    static const RegularExpression line(
        R"(^\s*([@A-Za-z0-9._/\-]+)@([^\s]+)\s+-\s+expected version:\s+(.+?)\s*$)",
        RegularExpression::Anchors::lines);
    ExpoCompatibilityIssues issues;
    for (const auto& captures : line.allMatches(text)) {
        if (captures.size() != 3) continue;
        ExpoCompatibilityIssue issue{.package = trimmedExpo(captures[0]),
                                     .installedVersion = trimmedExpo(captures[1]),
                                     .expectedVersion = trimmedExpo(captures[2])};
        std::string key = expoKey(issue.package);
        issues.insert_or_assign(std::move(key), std::move(issue));
    }
    return issues;
}

std::optional<std::string> expoBlockedUpdatesMessage(
    const std::vector<std::string>& blockedReasons) {
    return reasonsMessage(blockedReasons, " update(s) blocked by Expo SDK compatibility: ");
}

}  // namespace tarnbeck::DependencyScanner
