// Snapshots made to order, without any repository behind them.
#pragma once

#include <chrono>
#include <string>

#include "Dates.h"
#include "GitRepository.h"

namespace tarnbeck::testing {

inline const Date noon =
    std::chrono::sys_days{std::chrono::year{2026} / 3 / 1} + std::chrono::hours(12);

// Clean, on main, without an upstream.
GitRepository cleanRepository(const std::string& path);
GitRepository withChanges(GitRepository repository, int count);
GitRepository withSync(GitRepository repository, GitSyncStatus status);
GitRepository withBranch(GitRepository repository, const std::string& name);
GitRepository detached(GitRepository repository);

RepositorySnapshot snapshot(GitRepository repository);

}  // namespace tarnbeck::testing
