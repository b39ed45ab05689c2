// What a look at one repository's issues and pull requests on GitHub gave, and how it is asked for.
#pragma once

#include <array>
#include <string_view>
#include <utility>
#include <variant>

#include "GitHubRepositoryData.h"
#include "TextEnumeration.h"

namespace tarnbeck {

enum class GitHubIssueRefreshPolicy {
    useCache,      // a young answer from the cache will do
    forceRefresh,  // GitHub is asked in any case
};

constexpr auto rawValues(GitHubIssueRefreshPolicy /*tag*/) {
    return std::to_array<std::pair<GitHubIssueRefreshPolicy, std::string_view>>({
        {GitHubIssueRefreshPolicy::useCache, "useCache"},
        {GitHubIssueRefreshPolicy::forceRefresh, "forceRefresh"},
    });
}

struct GitHubRepoScanResult {
    struct Success {
        GitHubRepositoryData data;
        bool operator==(const Success&) const = default;
    };
    // The repository has no remote on GitHub.
    struct Skipped {
        bool operator==(const Skipped&) const = default;
    };
    // Nothing could be fetched, and the cache had nothing young enough.
    struct Failed {
        bool operator==(const Failed&) const = default;
    };

    std::variant<Failed, Skipped, Success> value;

    // The data of a success; null otherwise.
    const GitHubRepositoryData* data() const {
        const auto* success = std::get_if<Success>(&value);
        return success ? &success->data : nullptr;
    }
    template <class Case>
    bool is() const {
        return std::holds_alternative<Case>(value);
    }

    bool operator==(const GitHubRepoScanResult&) const = default;
};

}  // namespace tarnbeck
