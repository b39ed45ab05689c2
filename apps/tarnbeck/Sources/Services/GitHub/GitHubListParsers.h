// Reading the lists that `gh issue list --json` and `gh pr list --json` print. Total: bytes that
// are no array of objects are an empty list, an item without number, title or URL is left out, and
// whatever else is missing or of another type takes its default. The order is kept. Pure; any
// thread.
#pragma once

#include <string_view>

#include "GitHubIssue.h"
#include "GitHubPullRequest.h"
#include "ImmutableList.h"

namespace tarnbeck::GitHubListParsers {

ImmutableList<GitHubIssue> parseIssuesJSON(std::string_view bytes);
ImmutableList<GitHubPullRequest> parsePullRequestsJSON(std::string_view bytes);

}  // namespace tarnbeck::GitHubListParsers
