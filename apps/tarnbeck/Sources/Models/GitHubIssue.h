// One open issue on GitHub, as `gh issue list` tells it (texts and times as received).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "ImmutableList.h"
#include "Record.h"

namespace tarnbeck {

struct GitHubIssue {
    std::int64_t id = 0;  // always equal to `number`
    std::int64_t number = 0;
    std::string title;
    std::string state = "OPEN";
    ImmutableList<std::string> labels;
    std::string author;     // login, empty when unknown
    std::string createdAt;  // ISO 8601, empty when unknown
    std::optional<std::string> updatedAt;
    std::string url;

    bool operator==(const GitHubIssue&) const = default;

    static constexpr auto fields() {
        return std::tuple{
            field("id", &GitHubIssue::id),
            field("number", &GitHubIssue::number),
            field("title", &GitHubIssue::title),
            field("state", &GitHubIssue::state),
            field("labels", &GitHubIssue::labels),
            field("author", &GitHubIssue::author),
            field("createdAt", &GitHubIssue::createdAt),
            field("updatedAt", &GitHubIssue::updatedAt),
            field("url", &GitHubIssue::url),
        };
    }
};

}  // namespace tarnbeck
