#include "UITestFixtureData.h"

#include <algorithm>
#include <utility>

namespace tarnbeck {
namespace {

GitRepository clean() {
    return {
        .path = "/fixtures/repo-clean",
        .name = "repo-clean",
        .currentBranch = "main",
        .branches = {{.name = "main", .isCurrent = true}},
        .remoteBranches = {"origin/main"},
        .tags = {"v1.0.0"},
    };
}

GitWorktree worktree(GitWorktree fields) {
    fields.isMainWorktree = fields.branch == "main" || fields.branch == "master";
    return fields;
}

GitRepository dirty() {
    return {
        .path = "/fixtures/repo-dirty",
        .name = "repo-dirty",
        .currentBranch = "feature/ui-harness",
        .branches = {{.name = "main"}, {.name = "feature/ui-harness", .isCurrent = true}},
        .remoteBranches = {"origin/HEAD", "origin/main", "origin/feature/ui-harness"},
        .worktrees =
            {worktree({.path = "/fixtures/repo-dirty", .branch = "main", .commitHash = "abc1111"}),
             worktree({.path = "/fixtures/repo-dirty-wt",
                       .branch = "feature/ui-harness",
                       .commitHash = "def2222",
                       .changes = {{.status = "M", .filePath = "Sources/App.swift"}}})},
        .tags = {"v0.9.0"},
        .uncommittedChanges = {{.status = "M", .filePath = "README.md"}},
        .stashCount = 1,
        .stashes = {{.reference = "stash@{0}", .subject = "On feature/ui-harness: fixture stash"}},
    };
}

GitRepository service() {
    return {
        .path = "/fixtures/alpha-service",
        .name = "alpha-service",
        .currentBranch = "main",
        .branches = {{.name = "main", .isCurrent = true}},
        .remoteBranches = {"origin/main", "upstream/release/2026.03"},
        .tags = {"v2.3.4"},
    };
}

std::optional<GitRepository> fixtureAt(const std::string& path) {
    const auto& all = UITestFixtureData::repositories();
    const auto found = std::ranges::find(all, path, [](const auto& one) { return one->path; });
    if (found == all.end()) return std::nullopt;
    return **found;
}

}  // namespace

const std::vector<RepositorySnapshot>& UITestFixtureData::repositories() {
    static const std::vector<RepositorySnapshot> all = {
        std::make_shared<const GitRepository>(clean()),
        std::make_shared<const GitRepository>(dirty()),
        std::make_shared<const GitRepository>(service()),
    };
    return all;
}

std::unique_ptr<RepositoryScanner> UITestFixtureData::makeScanner(
    RepositoryScanner::Services services,
    std::function<void(const AppConfiguration&)> saveConfiguration) {
    services.git = [](const GitInvocation&) { return std::nullopt; };
    services.fileEvents = nullptr;
    RepositoryScanner::Options options;
    options.autoStart = false;
    options.scanRepositoryHandler = [](const std::string& path, const ScanCompletion& completion) {
        completion(fixtureAt(path));
    };
    options.saveConfiguration = std::move(saveConfiguration);
    for (const auto& repository : repositories()) {
        options.configuration.repoPaths.push_back(repository->path);
    }
    options.configuration.appMode = AppConfiguration::AppMode::regular;
    auto scanner = std::make_unique<RepositoryScanner>(std::move(services), std::move(options));
    scanner->setRepositories(repositories());
    return scanner;
}

}  // namespace tarnbeck
