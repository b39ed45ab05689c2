#include <algorithm>

#include "Fuzzing.h"
#include "GitHubListParsers.h"
#include "Text.h"

template <class List>
void expectWholeItems(const List& list) {
    for (const auto& item : list) {
        promise(item.id == item.number);
        promise(tarnbeck::isValidUtf8(item.title) && tarnbeck::isValidUtf8(item.url));
    }
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto issues = tarnbeck::GitHubListParsers::parseIssuesJSON(textOf(data, size));
    const auto pullRequests =
        tarnbeck::GitHubListParsers::parsePullRequestsJSON(textOf(data, size));
    expectWholeItems(issues);
    expectWholeItems(pullRequests);
    // Both need the same of an item.
    promise(std::ranges::equal(issues, pullRequests, {}, &tarnbeck::GitHubIssue::number,
                               &tarnbeck::GitHubPullRequest::number));
    return 0;
}
