// Repositories, flags and sections made to order.
#pragma once

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "MainViewContent.h"
#include "SectionContent.h"

namespace tarnbeck::testing {

// Clean, on main, level with its upstream.
inline GitRepository calmRepository(const std::string& path = "/work/lake") {
    return {.path = path,
            .name = path.substr(path.rfind('/') + 1),
            .currentBranch = "main",
            .branches = {{"main", true}},
            .syncStatus = GitSyncStatus::UpToDate{"origin/main"}};
}

inline ImmutableList<FileChange> modifiedFiles(int count) {
    std::vector<FileChange> changes;
    for (int number = 1; number <= count; ++number) {
        changes.push_back({"M", fmt::format("src/file{}.cpp", number)});
    }
    return changes;
}

inline GitHubIssue numberedIssue(std::int64_t number) {
    return {.id = number,
            .number = number,
            .title = fmt::format("Issue {}", number),
            .url = fmt::format("https://example.org/issues/{}", number)};
}

template <class Item>
ImmutableList<Item> numbered(int count, Item (*make)(std::int64_t)) {
    std::vector<Item> items;
    for (int number = 1; number <= count; ++number) items.push_back(make(number));
    return items;
}

inline GitHubPullRequest numberedPullRequest(std::int64_t number) {
    return {.id = number,
            .number = number,
            .title = fmt::format("Pull request {}", number),
            .url = fmt::format("https://example.org/pull/{}", number)};
}

// As the main view sets them in its list, open.
inline SectionFlags flagsOf(DomainMode domain) {
    const bool isCombined = domain == DomainMode::combined;
    return {.isExpanded = true,
            .canCollapse = true,
            .showGitDetails = isCombined || domain == DomainMode::git,
            .showIssuesOnly = domain == DomainMode::issues,
            .showDependencyDetails = isCombined || domain == DomainMode::dependencies};
}

// The domain of git, without the issues that its details can show too.
inline SectionFlags gitOnly() {
    SectionFlags flags = flagsOf(DomainMode::git);
    flags.showIssues = false;
    return flags;
}

// Everything that can be opened is open, but for branches.
inline SectionState allOpen() {
    return {.showRemoteSection = true,
            .showTagsSection = true,
            .showStashesSection = true,
            .showIssuesSection = true,
            .showPullRequestsSection = true};
}

inline std::vector<Row> rowsOf(const GitRepository& repository, const SectionFlags& flags,
                               const SectionState& state = allOpen()) {
    return sectionContent({repository, state, flags}).rows;
}

inline std::vector<Row> rowsOfKind(std::vector<Row> rows, Row::Kind kind) {
    std::erase_if(rows, [&](const Row& row) { return row.kind != kind; });
    return rows;
}

inline std::vector<std::string> titlesOf(const std::vector<Row>& rows) {
    std::vector<std::string> titles;
    for (const Row& row : rows) titles.push_back(row.title);
    return titles;
}

inline std::vector<std::string> idsOf(const std::vector<Row>& rows) {
    std::vector<std::string> ids;
    for (const Row& row : rows) ids.push_back(row.id);
    return ids;
}

// The first one of this title; the test fails where there is none.
inline Row rowTitled(const std::vector<Row>& rows, std::string_view title) {
    const auto row = std::ranges::find(rows, title, &Row::title);
    if (row == rows.end()) throw std::runtime_error(fmt::format("no row titled {}", title));
    return *row;
}

}  // namespace tarnbeck::testing
