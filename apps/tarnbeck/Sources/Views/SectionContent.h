// What is shown of one repository: a header that sums it up, and the rows below it. Plain values.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "GitRepository.h"
#include "Row.h"

namespace tarnbeck {

// "Git Dirty", "Sync Behind 2": a title and a value, the value in its colour.
struct StatusBadge {
    std::string_view title;
    std::string value;
    StatusColor color = StatusColor::secondary;

    bool operator==(const StatusBadge&) const = default;
};

struct SectionHeader {
    bool canCollapse = false;  // a click toggles it, and a chevron shows how it stands
    bool isExpanded = false;
    std::string_view statusIcon;  // one of `symbolNames`
    StatusColor statusColor = StatusColor::secondary;
    std::string name;
    bool isNameHighlighted = false;
    std::vector<std::string> summaryParts;  // joined by " · "
    std::vector<RowAction> actions;         // one in progress stands alone
    std::vector<StatusBadge> badges;
    std::string accessibleName;

    bool operator==(const SectionHeader&) const = default;
};

struct SectionContent {
    std::string path;  // identity: of the repository
    SectionHeader header;
    std::vector<Row> rows;  // none while it is closed

    bool operator==(const SectionContent&) const = default;
};

// Where the discarding of one file stands.
struct DiscardState {
    bool isDiscarding = false;
    bool isOptimisticallyHidden = false;

    bool operator==(const DiscardState&) const = default;
};

// What the user opened and closed in one repository, and what is being discarded there.
struct SectionState {
    bool showBranches = true;
    bool showWorktrees = true;
    std::map<std::string, bool> branchChangesExpanded;  // by branch name
    bool showRemoteSection = false;
    bool showTagsSection = false;
    bool showStashesSection = false;
    bool showIssuesSection = false;
    bool showPullRequestsSection = false;
    bool showDependenciesSection = true;
    std::map<std::string, DiscardState> discards;  // by row id

    bool operator==(const SectionState&) const = default;
};

// All else that decides what a section shows.
struct SectionFlags {
    bool isExpanded = false;
    bool canCollapse = false;
    bool showRemotes = true;
    bool showTags = true;
    bool showGitDetails = false;
    bool showIssuesOnly = false;
    bool showDependencyDetails = false;
    bool showIssues = true;
    bool issueScanInProgress = false;
    bool issueReloadInProgress = false;
    bool dependencyReloadInProgress = false;
    bool gitReloadInProgress = false;
    // Which of the functions that a section may call it was given.
    bool canRefreshIssues = true;
    bool canRefreshDependencies = true;
    bool canRefreshGit = true;
    bool canSyncRepo = true;
    std::string searchHighlight;

    bool operator==(const SectionFlags&) const = default;
};

struct SectionInput {
    const GitRepository& repository;
    const SectionState& state;
    const SectionFlags& flags;
};

// Pure, any thread; in proportion to the rows.
SectionContent sectionContent(const SectionInput& input);

// The kinds of the rows that `sectionContent` would make, without making them: enough to know how
// high the section is. Pure.
std::vector<Row::Kind> sectionRowKinds(const SectionInput& input);

}  // namespace tarnbeck
