#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "DependencyScanner+Python.h"
#include "DependencyScanner+PythonEnvironment.h"
#include "DependencyVersion.h"
#include "FileSystem.h"
#include "Json.h"
#include "Paths.h"

namespace tarnbeck::DependencyScanner {
namespace {

using InstalledVersions = std::map<std::string, std::string, std::less<>>;

bool liesBelow(std::string_view path, std::string_view root) {
    if (root == "/") return path != root;
    return path.size() > root.size() && path.starts_with(root) && path[root.size()] == '/';
}

std::vector<std::string> pythonExecutablesIn(const std::string& folder) {
    std::vector<std::string> found;
    for (const char* name :
         {"/.venv/bin/python3", "/.venv/bin/python", "/venv/bin/python3", "/venv/bin/python"}) {
        if (isExecutableFile(folder + name)) found.push_back(folder + name);
    }
    return found;
}

// Those of the parent folders, nearest first.
std::vector<std::string> inheritedPythonExecutables(const ProjectPlace& place) {
    std::vector<std::string> found;
    const auto folders = pythonEnvironmentSearchPaths(place);
    for (auto folder = folders.begin() + 1; folder != folders.end(); ++folder) {
        std::ranges::move(pythonExecutablesIn(*folder), std::back_inserter(found));
    }
    return found;
}

// By normalized name; absent for what is no list of packages.
std::optional<InstalledVersions> installedVersions(std::string_view text) {
    const Result<JsonValue> json = parsedJson(text);
    if (!json || !json->is_array()) return std::nullopt;
    InstalledVersions versions;
    for (const JsonValue& value : json->get_array()) {
        const JsonObject* package = value.if_object();
        if (!package) return std::nullopt;
        const JsonValue* name = package->if_contains("name");
        const JsonValue* version = package->if_contains("version");
        if (!name || !name->is_string() || !version || !version->is_string()) continue;
        versions[normalizedPythonName(std::string_view(name->get_string()))] =
            std::string_view(version->get_string());
    }
    return versions;
}

std::size_t numberOfComponents(const std::string& path) {
    const std::string whole = standardized(path);
    return whole == "/" ? 0 : static_cast<std::size_t>(std::ranges::count(whole, '/'));
}

// The best of several by its score, then by its distance, then by its place in the list.
std::string bestPythonExecutable(const DependencyTools& tools, const std::string& projectPath,
                                 const PythonConstraints& constraints,
                                 const std::vector<std::string>& candidates) {
    std::string best;
    std::pair<int, std::ptrdiff_t> bestRank;
    for (const std::string& candidate : candidates) {
        const int score = pythonRequirementMatchScore(
            tools, {.pythonExecutable = candidate, .constraints = constraints, .cwd = projectPath});
        const auto distance = static_cast<std::ptrdiff_t>(pythonExecutableDistanceToProject(
            {.executable = candidate, .projectPath = projectPath}));
        const std::pair rank(score, -distance);
        if (!best.empty() && rank <= bestRank) continue;
        best = candidate;
        bestRank = rank;
    }
    return best;
}

}  // namespace

std::vector<std::string> pythonEnvironmentSearchPaths(const ProjectPlace& place) {
    const std::string root = standardized(place.repoPath);
    std::vector<std::string> paths = {standardized(place.projectPath)};
    while (liesBelow(paths.back(), root)) paths.emplace_back(parentPath(paths.back()));
    return paths;
}

std::optional<std::string> detectPythonExecutable(const DependencyTools& tools,
                                                  const ProjectPlace& place) {
    const std::string projectPath = standardized(place.projectPath);
    const auto own = pythonExecutablesIn(projectPath);
    if (!own.empty()) return own.front();
    const auto candidates = inheritedPythonExecutables(place);
    if (candidates.empty()) return std::nullopt;
    if (candidates.size() == 1) return candidates.front();
    const PythonConstraints constraints = pythonRequirements(projectPath);
    if (constraints.empty()) return candidates.front();
    return bestPythonExecutable(tools, projectPath, constraints, candidates);
}

int pythonRequirementMatchScore(const DependencyTools& tools, const MatchQuestion& question) {
    const CommandResult listed = tools.runCommand({.executable = question.pythonExecutable,
                                                   .args = {"-m", "pip", "list", "--format=json"},
                                                   .cwd = question.cwd,
                                                   .timeout = tools.timeouts.pythonMatchScore});
    if (listed.terminationStatus != 0 || listed.timedOut) return 0;
    const auto versions = installedVersions(listed.stdout);
    if (!versions) return 0;
    return static_cast<int>(std::ranges::count_if(question.constraints, [&](const auto& named) {
        const auto installed = versions->find(named.first);
        return installed != versions->end() &&
               !isOlder(installed->second, named.second.minimumVersion);
    }));
}

std::size_t pythonExecutableDistanceToProject(const ExecutablePlace& place) {
    const std::string_view environment = parentPath(parentPath(place.executable));
    const std::size_t holder = numberOfComponents(std::string(parentPath(environment)));
    const std::size_t project = numberOfComponents(place.projectPath);
    return std::max(holder, project) - std::min(holder, project);
}

}  // namespace tarnbeck::DependencyScanner
