// Snapshots made to order, without any repository behind them.
#pragma once

#include <string>

#include "GitRepository.h"

namespace tarnbeck::testing {

// Clean, on main, without an upstream.
GitRepository cleanRepository(const std::string& path);
GitRepository withChanges(GitRepository repository, int count);
GitRepository withSync(GitRepository repository, GitSyncStatus status);
GitRepository withBranch(GitRepository repository, const std::string& name);
GitRepository detached(GitRepository repository);

RepositorySnapshot snapshot(GitRepository repository);

}  // namespace tarnbeck::testing
