#include "Snapshots.h"

#include "Paths.h"

namespace tarnbeck::testing {

GitRepository cleanRepository(const std::string& path) {
    GitRepository repository;
    repository.path = path;
    repository.name = lastPathComponent(path);
    repository.currentBranch = "main";
    repository.branches = {{.name = "main", .isCurrent = true}};
    repository.syncStatus = GitSyncStatus::NoUpstream{};
    return repository;
}

GitRepository withChanges(GitRepository repository, int count) {
    std::vector<FileChange> changes;
    for (int number = 1; number <= count; ++number) {
        changes.push_back({.status = "M", .filePath = "file" + std::to_string(number)});
    }
    repository.uncommittedChanges = std::move(changes);
    return repository;
}

GitRepository withSync(GitRepository repository, GitSyncStatus status) {
    repository.syncStatus = std::move(status);
    return repository;
}

GitRepository withBranch(GitRepository repository, const std::string& name) {
    repository.branches = {{.name = "main", .isCurrent = false}, {.name = name, .isCurrent = true}};
    repository.currentBranch = name;
    return repository;
}

GitRepository detached(GitRepository repository) {
    repository.isDetachedHead = true;
    repository.currentBranch = "1a2b3c4";
    return repository;
}

RepositorySnapshot snapshot(GitRepository repository) {
    return std::make_shared<const GitRepository>(std::move(repository));
}

}  // namespace tarnbeck::testing
