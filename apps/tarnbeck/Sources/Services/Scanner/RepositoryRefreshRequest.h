// One demand for a full scan, and how demands that meet become one.
#pragma once

#include <array>
#include <string_view>
#include <utility>

#include "TextEnumeration.h"

namespace tarnbeck {

enum class RepositoryRefreshTrigger { initial, fileSystemEvent, manual, periodic };

constexpr auto rawValues(RepositoryRefreshTrigger /*tag*/) {
    return std::to_array<std::pair<RepositoryRefreshTrigger, std::string_view>>({
        {RepositoryRefreshTrigger::initial, "initial"},
        {RepositoryRefreshTrigger::fileSystemEvent, "fileSystemEvent"},
        {RepositoryRefreshTrigger::manual, "manual"},
        {RepositoryRefreshTrigger::periodic, "periodic"},
    });
}

// manual 3, initial 2, periodic 1, fileSystemEvent 0.
int rankOf(RepositoryRefreshTrigger trigger);

struct RepositoryRefreshRequest {
    RepositoryRefreshTrigger trigger = RepositoryRefreshTrigger::fileSystemEvent;
    bool refreshDependencies = false;  // run the dependency scan afterwards
    bool refreshIssues = false;        // run the issue scan afterwards
    bool forceIssueRefresh = false;    // the issue scan bypasses its cache
    bool refreshRemotes = false;       // fetch in each repository first

    bool operator==(const RepositoryRefreshRequest&) const = default;

    // The requests that have a name: the scanner's start, the timer's, and that of a person who
    // wants everything fresh.
    static RepositoryRefreshRequest atStart();
    static RepositoryRefreshRequest periodic();
    static RepositoryRefreshRequest byHand();

    // All that either asks for; the trigger of higher rank, of equals this one's.
    RepositoryRefreshRequest mergedWith(const RepositoryRefreshRequest& newer) const;
};

}  // namespace tarnbeck
