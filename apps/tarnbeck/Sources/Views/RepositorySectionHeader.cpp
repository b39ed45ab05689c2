#include "RepositorySectionHeader.h"

#include <array>
#include <string>
#include <utility>

#include <fmt/format.h>

#include "Text.h"

namespace tarnbeck {
namespace {

bool tellsOfUpstream(const std::string& part) {
    return part.starts_with("ahead ") || part.starts_with("behind ") ||
           part.starts_with("diverged ");
}

std::vector<std::string> headerSummaryParts(const SectionContext& context) {
    const GitRepository& repository = context.repository;
    std::vector<std::string> parts;
    if (context.flags.showGitDetails) {
        parts = repository.summaryParts();
        std::erase_if(parts, tellsOfUpstream);  // the badge does
    }
    if (context.flags.showIssuesOnly) {
        if (const std::size_t count = repository.issues.size(); count > 0) {
            parts.push_back(fmt::format("{} issues", count));
        }
        if (const std::size_t count = repository.pullRequests.size(); count > 0) {
            parts.push_back(fmt::format("{} PRs", count));
        }
    }
    if (context.flags.showDependencyDetails) {
        if (auto summary = repository.dependencySummary.inlineSummary()) {
            parts.push_back(*std::move(summary));
        }
    }
    return parts;
}

// What the refresh in the header means.
struct HeaderRefresh {
    std::string_view tooltip;
    bool isInProgress;
    bool isOffered;
};

HeaderRefresh headerRefresh(const SectionFlags& flags) {
    switch (domainOf(flags)) {
        case DomainMode::git:
            return {"Refresh git data for this repository", flags.gitReloadInProgress,
                    flags.canRefreshGit};
        case DomainMode::issues:
            return {"Reload issues and pull requests", flags.issueReloadInProgress,
                    flags.canRefreshIssues};
        case DomainMode::dependencies:
            return {"Refresh dependencies for this repository", flags.dependencyReloadInProgress,
                    flags.canRefreshDependencies};
        case DomainMode::combined:
            break;
    }
    return {"Refresh git, issues, and dependencies for this repository",
            flags.gitReloadInProgress || flags.issueReloadInProgress ||
                flags.dependencyReloadInProgress,
            flags.canRefreshGit || flags.canRefreshIssues || flags.canRefreshDependencies};
}

bool canFastForward(const SectionContext& context) {
    const GitRepository& repository = context.repository;
    return !repository.gitConfigurationIssue && repository.syncStatus.is<GitSyncStatus::Behind>() &&
           repository.uncommittedChanges.empty() && !repository.isDetachedHead &&
           context.flags.canSyncRepo;
}

std::vector<RowAction> headerActions(const SectionContext& context) {
    const HeaderRefresh refresh = headerRefresh(context.flags);
    const RowAction refreshAction{.kind = RowActionKind::refresh,
                                  .symbol = "arrow.clockwise",
                                  .help = std::string(refresh.tooltip),
                                  .isInProgress = refresh.isInProgress};
    if (refresh.isInProgress) return {refreshAction};
    std::vector<RowAction> actions;
    if (canFastForward(context)) {
        actions.push_back({.kind = RowActionKind::sync,
                           .symbol = "arrow.triangle.2.circlepath",
                           .help = "Fetch remote changes and fast-forward this repository"});
    }
    if (refresh.isOffered) actions.push_back(refreshAction);
    return actions;
}

StatusBadge gitBadge(const GitRepository& repository) {
    if (repository.gitConfigurationIssue) return {"Git", "Config", StatusColor::orange};
    if (repository.isDetachedHead) return {"Git", "Detached", StatusColor::red};
    if (!repository.uncommittedChanges.empty()) return {"Git", "Dirty", StatusColor::red};
    if (repository.isClean()) return {"Git", "Clean", StatusColor::green};
    return {"Git", "Attention", StatusColor::orange};
}

std::optional<StatusBadge> syncBadge(const GitSyncStatus& status) {
    const bool isAhead = status.is<GitSyncStatus::Ahead>();
    if (!isAhead && !status.is<GitSyncStatus::Behind>() && !status.is<GitSyncStatus::Diverged>()) {
        return std::nullopt;
    }
    return StatusBadge{"Sync", status.badgeValue(),
                       isAhead ? StatusColor::orange : StatusColor::yellow};
}

StatusBadge dependencyBadge(DependencyHealth status) {
    switch (status) {
        case DependencyHealth::checking:
            return {"Deps", "Checking", StatusColor::blue};
        case DependencyHealth::upToDate:
            return {"Deps", "Up to date", StatusColor::green};
        case DependencyHealth::syncNeeded:
            return {"Deps", "Sync needed", StatusColor::yellow};
        case DependencyHealth::constraints:
            return {"Deps", "Constraints", StatusColor::yellow};
        case DependencyHealth::updatesAvailable:
            return {"Deps", "Updates", StatusColor::orange};
        case DependencyHealth::notApplicable:
            return {"Deps", "n/a", StatusColor::secondary};
        case DependencyHealth::unknown:
            return {"Deps", "Unknown", StatusColor::gray};
        case DependencyHealth::error:
            break;
    }
    return {"Deps", "Error", StatusColor::red};
}

std::vector<StatusBadge> headerBadges(const SectionContext& context) {
    std::vector<StatusBadge> badges;
    if (context.flags.showGitDetails) badges.push_back(gitBadge(context.repository));
    if (auto badge = syncBadge(context.repository.syncStatus)) badges.push_back(*std::move(badge));
    if (context.flags.showDependencyDetails) {
        badges.push_back(dependencyBadge(context.repository.dependencySummary.status()));
    }
    return badges;
}

// What the symbol says to those who see it, where no badge says it.
std::string_view wordsOfIcon(const GitRepository& repository) {
    if (repository.gitConfigurationIssue) return "git config issue";
    if (repository.isDetachedHead) return "detached HEAD";
    if (!repository.uncommittedChanges.empty()) return "uncommitted changes";
    if (syncBadge(repository.syncStatus)) return {};
    return repository.isClean() ? "clean" : "needs attention";
}

// "Sync Diverged, 2 ahead, 3 behind": arrows and abbreviations spelled out.
std::string wordsOfBadge(const StatusBadge& badge, const GitRepository& repository) {
    const auto* diverged = std::get_if<GitSyncStatus::Diverged>(&repository.syncStatus.value);
    if (badge.title == "Sync" && diverged) {
        return fmt::format("Sync Diverged, {} ahead, {} behind", diverged->ahead, diverged->behind);
    }
    if (badge.title != "Deps") return fmt::format("{} {}", badge.title, badge.value);
    return "Dependencies " + (badge.value == "n/a" ? "not applicable" : badge.value);
}

std::string headerAccessibleName(const SectionContext& context, const SectionHeader& header) {
    std::vector<std::string> words = {header.name};
    if (const auto icon = wordsOfIcon(context.repository);
        !context.flags.showGitDetails && !icon.empty()) {
        words.emplace_back(icon);
    }
    for (const StatusBadge& badge : header.badges) {
        words.push_back(wordsOfBadge(badge, context.repository));
    }
    words.insert(words.end(), header.summaryParts.begin(), header.summaryParts.end());
    if (header.canCollapse) words.emplace_back(header.isExpanded ? "expanded" : "collapsed");
    return joined(words, ", ");
}

}  // namespace

DomainMode domainOf(const SectionFlags& flags) {
    if (flags.showGitDetails) {
        return flags.showDependencyDetails ? DomainMode::combined : DomainMode::git;
    }
    return flags.showIssuesOnly ? DomainMode::issues : DomainMode::dependencies;
}

SectionHeader sectionHeader(const SectionContext& context) {
    const GitRepository& repository = context.repository;
    SectionHeader header{.canCollapse = context.flags.canCollapse,
                         .isExpanded = context.flags.isExpanded,
                         .statusIcon = repository.statusIcon(),
                         .statusColor = repository.statusColor(),
                         .name = printable(repository.name),
                         .isNameHighlighted = context.search.isIn(repository.name),
                         .summaryParts = headerSummaryParts(context),
                         .actions = headerActions(context),
                         .badges = headerBadges(context)};
    header.accessibleName = headerAccessibleName(context, header);
    return header;
}

}  // namespace tarnbeck
