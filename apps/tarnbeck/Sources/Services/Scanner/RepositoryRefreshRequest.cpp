#include "RepositoryRefreshRequest.h"

namespace tarnbeck {

int rankOf(RepositoryRefreshTrigger trigger) {
    switch (trigger) {
        case RepositoryRefreshTrigger::manual:
            return 3;
        case RepositoryRefreshTrigger::initial:
            return 2;
        case RepositoryRefreshTrigger::periodic:
            return 1;
        case RepositoryRefreshTrigger::fileSystemEvent:
            return 0;
    }
    return 0;
}

RepositoryRefreshRequest RepositoryRefreshRequest::atStart() {
    return {.trigger = RepositoryRefreshTrigger::initial,
            .refreshDependencies = true,
            .refreshIssues = true,
            .forceIssueRefresh = true};
}

RepositoryRefreshRequest RepositoryRefreshRequest::periodic() {
    return {.trigger = RepositoryRefreshTrigger::periodic, .refreshDependencies = true};
}

RepositoryRefreshRequest RepositoryRefreshRequest::byHand() {
    return {.trigger = RepositoryRefreshTrigger::manual,
            .refreshDependencies = true,
            .refreshIssues = true,
            .forceIssueRefresh = true,
            .refreshRemotes = true};
}

RepositoryRefreshRequest RepositoryRefreshRequest::mergedWith(
    const RepositoryRefreshRequest& newer) const {
    return {
        .trigger = rankOf(newer.trigger) > rankOf(trigger) ? newer.trigger : trigger,
        .refreshDependencies = refreshDependencies || newer.refreshDependencies,
        .refreshIssues = refreshIssues || newer.refreshIssues,
        .forceIssueRefresh = forceIssueRefresh || newer.forceIssueRefresh,
        .refreshRemotes = refreshRemotes || newer.refreshRemotes,
    };
}

}  // namespace tarnbeck
