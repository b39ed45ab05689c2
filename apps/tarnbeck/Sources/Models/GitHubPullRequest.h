// One open pull request on GitHub, as `gh pr list` tells it (texts and times as received).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "ImmutableList.h"
#include "Record.h"

namespace tarnbeck {

struct GitHubPullRequest {
    std::int64_t id = 0;  // always equal to `number`
    std::int64_t number = 0;
    std::string title;
    std::string state = "OPEN";
    ImmutableList<std::string> labels;
    std::string author;     // login, empty when unknown
    std::string createdAt;  // ISO 8601, empty when unknown
    std::optional<std::string> updatedAt;
    bool isDraft = false;
    std::string url;

    bool operator==(const GitHubPullRequest&) const = default;

    static constexpr auto fields() {
        return std::tuple{
            field("id", &GitHubPullRequest::id),
            field("number", &GitHubPullRequest::number),
            field("title", &GitHubPullRequest::title),
            field("state", &GitHubPullRequest::state),
            field("labels", &GitHubPullRequest::labels),
            field("author", &GitHubPullRequest::author),
            field("createdAt", &GitHubPullRequest::createdAt),
            field("updatedAt", &GitHubPullRequest::updatedAt),
            field("isDraft", &GitHubPullRequest::isDraft),
            field("url", &GitHubPullRequest::url),
        };
    }
};

}  // namespace tarnbeck
