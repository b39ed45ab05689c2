// Repositories as a developer has them, in every state there is: for pictures, and for measuring
// with as many of them as is asked for.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "GitRepository.h"

namespace tarnbeck::testing {

namespace samples {

inline GitRepository tidy(const std::string& name) {
    GitRepository repository;
    repository.path = "/home/ada/projects/" + name;
    repository.name = name;
    repository.currentBranch = "main";
    repository.branches = {{.name = "main", .isCurrent = true}};
    repository.remoteBranches = {"origin/main"};
    repository.tags = {"v2.1.0", "v2.0.0", "v1.9.3"};
    repository.syncStatus = GitSyncStatus::UpToDate{.upstream = "origin/main"};
    repository.dependencySummary = {.ecosystems = {{.ecosystem = DependencyEcosystem::node,
                                                    .project = ".",
                                                    .manager = "npm",
                                                    .status = DependencyHealth::upToDate}}};
    return repository;
}

inline GitHubIssue issue(std::int64_t number, std::string title, std::vector<std::string> labels) {
    return {.id = number,
            .number = number,
            .title = std::move(title),
            .labels = std::move(labels),
            .author = "grace",
            .createdAt = "2026-10-01T09:00:00Z",
            .updatedAt = "2026-11-18T16:20:00Z",
            .url = "https://github.com/ada/sample/issues/" + std::to_string(number)};
}

inline GitHubPullRequest pullRequest(std::int64_t number, std::string title, bool isDraft) {
    return {.id = number,
            .number = number,
            .title = std::move(title),
            .labels = {"review"},
            .author = "linus",
            .createdAt = "2026-11-02T09:00:00Z",
            .isDraft = isDraft,
            .url = "https://github.com/ada/sample/pull/" + std::to_string(number)};
}

inline GitRepository dirty() {
    GitRepository repository = tidy("anchorage-api");
    repository.currentBranch = "feature/berth-planner";
    repository.branches = {{.name = "main"},
                           {.name = "feature/berth-planner", .isCurrent = true},
                           {.name = "fix/tide-table"}};
    repository.remoteBranches = {"origin/main", "origin/feature/berth-planner",
                                 "origin/release/2026.10"};
    repository.uncommittedChanges = {{.status = "M", .filePath = "src/berths/planner.ts"},
                                     {.status = "A", .filePath = "src/berths/overlap.ts"},
                                     {.status = "M", .filePath = "src/routes/berths.ts"},
                                     {.status = "D", .filePath = "src/legacy/slots.js"},
                                     {.status = "??", .filePath = "notes/tides.md"},
                                     {.status = "UU", .filePath = "package.json"}};
    repository.stashCount = 1;
    repository.stashes = {{.reference = "stash@{0}", .subject = "On main: try another index"}};
    repository.issues = {
        issue(412, "Berths overlap when the tide turns at midnight", {"bug", "p1"}),
        issue(398, "Export the plan as a calendar", {"feature"}),
        issue(377, "Dependency Dashboard", {})};
    repository.pullRequests = {pullRequest(415, "Plan berths by draught", false)};
    repository.dependencySummary = {
        .ecosystems = {{.ecosystem = DependencyEcosystem::node,
                        .project = ".",
                        .manager = "pnpm",
                        .status = DependencyHealth::updatesAvailable,
                        .updates = {{.package = "fastify",
                                     .currentVersion = "4.28.1",
                                     .latestVersion = "5.1.0",
                                     .updateType = DependencyUpdateType::major},
                                    {.package = "zod",
                                     .currentVersion = "3.23.8",
                                     .latestVersion = "3.24.1",
                                     .updateType = DependencyUpdateType::minor}}}}};
    return repository;
}

inline GitRepository worktrees() {
    GitRepository repository = tidy("beacon-control");
    repository.branches = {{.name = "main", .isCurrent = true},
                           {.name = "release/4.2"},
                           {.name = "spike/lamp-driver"}};
    repository.worktrees = {
        {.path = "/home/ada/projects/beacon-control",
         .branch = "main",
         .commitHash = "4f1c2aa",
         .isMainWorktree = true},
        {.path = "/home/ada/projects/beacon-control-release",
         .branch = "release/4.2",
         .commitHash = "9be0d11",
         .changes = {{.status = "M", .filePath = "firmware/rotation.c"},
                     {.status = "M", .filePath = "firmware/include/rotation.h"}}},
        {.path = "/home/ada/projects/beacon-control-bisect",
         .commitHash = "77aa01c",
         .isDetached = true}};
    repository.syncStatus = GitSyncStatus::Ahead{.upstream = "origin/main", .count = 2};
    repository.issues = {issue(88, "Lamp does not dim at dawn", {"hardware"})};
    repository.pullRequests = {pullRequest(91, "Retry the rotation sensor", true)};
    return repository;
}

inline GitRepository behind() {
    GitRepository repository = tidy("tide-tables");
    repository.syncStatus = GitSyncStatus::Behind{.upstream = "origin/main", .count = 7};
    repository.dependencySummary = {.ecosystems = {{.ecosystem = DependencyEcosystem::python,
                                                    .project = ".",
                                                    .manager = "pip",
                                                    .status = DependencyHealth::syncNeeded}}};
    return repository;
}

inline GitRepository detached() {
    GitRepository repository = tidy("buoy-firmware");
    repository.currentBranch = "a81f33c";
    repository.isDetachedHead = true;
    repository.branches = {{.name = "main"}};
    repository.syncStatus = GitSyncStatus::NoUpstream{};
    repository.dependencySummary = DependencySummary::notApplicable;
    return repository;
}

inline GitRepository diverged() {
    GitRepository repository = tidy("chart-renderer");
    repository.syncStatus =
        GitSyncStatus::Diverged{.upstream = "origin/main", .ahead = 3, .behind = 12};
    repository.stashCount = 2;
    repository.stashes = {{.reference = "stash@{0}", .subject = "WIP on main: contour cache"},
                          {.reference = "stash@{1}", .subject = ""}};
    return repository;
}

inline GitRepository misconfigured() {
    GitRepository repository = tidy("archive-mirror");
    repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    return repository;
}

inline GitRepository checking() {
    GitRepository repository = tidy("sextant-ui");
    repository.dependencySummary = {.ecosystems = {{.ecosystem = DependencyEcosystem::node,
                                                    .project = ".",
                                                    .manager = "npm",
                                                    .status = DependencyHealth::checking}}};
    repository.issues = {issue(7, "Keyboard focus is lost in the dial",
                               {"a11y", "good first issue", "help wanted"})};
    return repository;
}

}  // namespace samples

// In the order of their names, as the scanner has them.
inline std::vector<GitRepository> sampleRepositories() {
    return {samples::dirty(),    samples::misconfigured(), samples::worktrees(),
            samples::detached(), samples::diverged(),      samples::tidy("dotfiles"),
            samples::checking(), samples::behind()};
}

// `count` of them, each with a name and a path of its own.
inline std::vector<RepositorySnapshot> manySampleRepositories(std::size_t count) {
    const std::vector<GitRepository> kinds = sampleRepositories();
    std::vector<RepositorySnapshot> result;
    for (std::size_t index = 0; index < count; ++index) {
        GitRepository repository = kinds[index % kinds.size()];
        repository.name = std::to_string(1000 + index) + "-" + repository.name;
        repository.path = "/home/ada/projects/" + repository.name;
        result.push_back(std::make_shared<const GitRepository>(std::move(repository)));
    }
    return result;
}

}  // namespace tarnbeck::testing
