// How an attempt to bring a branch up to date ended, in words.
#pragma once

#include <optional>
#include <string>

#include "GitRepository.h"

namespace tarnbeck::cli {

struct SyncAttempt {
    RepositorySnapshot before;           // after the fetch, before the pull
    RepositorySnapshot after;            // at the end
    std::optional<std::string> failure;  // what git said when it failed
};

struct SyncOutcome {
    std::string text;
    bool isFailure = false;

    bool operator==(const SyncOutcome&) const = default;
};

// Pure. Both snapshots are there.
SyncOutcome syncOutcome(const SyncAttempt& attempt);

}  // namespace tarnbeck::cli
