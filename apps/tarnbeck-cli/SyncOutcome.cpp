#include "SyncOutcome.h"

#include <fmt/format.h>

#include "Overloaded.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

std::string commits(std::int64_t count) {
    return fmt::format("{} {}", count, count == 1 ? "commit" : "commits");
}

SyncOutcome outcomeOfPull(const GitSyncStatus::Behind& behind, const SyncAttempt& attempt) {
    const GitRepository& after = *attempt.after;
    const std::string branch = printable(after.currentBranch.value_or("the branch"));
    if (!after.syncStatus.is<GitSyncStatus::Behind>() && !attempt.failure) {
        return {fmt::format("{} is {} further: up to date with {}", branch, commits(behind.count),
                            printable(behind.upstream))};
    }
    const std::string still = fmt::format("{} stays {} behind {}", branch, commits(behind.count),
                                          printable(behind.upstream));
    if (attempt.failure) return {fmt::format("{}: {}", still, *attempt.failure), true};
    if (!after.uncommittedChanges.empty()) {
        return {still + ": there are uncommitted changes; commit, stash or discard them first",
                true};
    }
    if (after.gitConfigurationIssue) {
        return {still + ": git's configuration says that there is no work tree (core.bare)", true};
    }
    return {still, true};
}

}  // namespace

SyncOutcome syncOutcome(const SyncAttempt& attempt) {
    const GitRepository& before = *attempt.before;
    if (before.isDetachedHead) return {"HEAD is detached: there is no branch to sync", true};
    const std::string branch = printable(before.currentBranch.value_or("the branch"));
    if (attempt.failure && !before.syncStatus.is<GitSyncStatus::Behind>()) {
        return {*attempt.failure, true};
    }
    return std::visit(
        Overloaded{
            [&](const GitSyncStatus::UpToDate& status) -> SyncOutcome {
                return {
                    fmt::format("{} is up to date with {}", branch, printable(status.upstream))};
            },
            [&](const GitSyncStatus::Ahead& status) -> SyncOutcome {
                return {fmt::format("{} is {} ahead of {}: there is nothing to pull", branch,
                                    commits(status.count), printable(status.upstream))};
            },
            [&](const GitSyncStatus::Behind& status) { return outcomeOfPull(status, attempt); },
            [&](const GitSyncStatus::Diverged& status) -> SyncOutcome {
                return {
                    fmt::format("{} and {} have diverged ({} against {}): that takes a merge or "
                                "a rebase",
                                branch, printable(status.upstream), commits(status.ahead),
                                commits(status.behind)),
                    true};
            },
            [&](const GitSyncStatus::NoUpstream&) -> SyncOutcome {
                return {branch + " has no upstream branch", true};
            },
            [&](const GitSyncStatus::Unknown&) -> SyncOutcome {
                return {branch + ": git does not tell how it stands to its upstream branch", true};
            },
        },
        before.syncStatus.value);
}

}  // namespace tarnbeck::cli
