// The open issues and pull requests of one repository.
#pragma once

#include "GitHubIssue.h"
#include "GitHubPullRequest.h"
#include "ImmutableList.h"

namespace tarnbeck {

struct GitHubRepositoryData {
    ImmutableList<GitHubIssue> issues;
    ImmutableList<GitHubPullRequest> pullRequests;

    bool operator==(const GitHubRepositoryData&) const = default;
};

}  // namespace tarnbeck
