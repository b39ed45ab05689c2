#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <iterator>

#include "CaseInsensitiveSearch.h"
#include "MainView.h"
#include "RepositoryFacts.h"

namespace tarnbeck {
namespace {

using std::chrono::sys_seconds;

// Before all dates that mean something.
constexpr sys_seconds distantPast =
    std::chrono::sys_days{std::chrono::year{1} / std::chrono::January / 1};

// Where a repository goes: by rank, then the later date first, then by name.
struct Place {
    std::int64_t rank;
    sys_seconds date;
    RepositoryFacts* facts;

    bool isBefore(const Place& other, const NameCollator& collator) const {
        if (rank != other.rank) return rank < other.rank;
        if (date != other.date) return date > other.date;
        return facts->nameKey(collator) < other.facts->nameKey(collator);
    }
};

std::int64_t issuePriority(const RepositoryFacts::IssueCounts& counts) {
    return counts.pullRequests * 1000 + counts.real * 100 + counts.dashboard;
}

std::int64_t issueAmount(const RepositoryFacts::IssueCounts& counts) {
    return counts.real * 100 + counts.pullRequests * 10 + counts.dashboard;
}

std::int64_t rankOf(RepositoryFacts& facts, SortMode mode, DomainMode domain) {
    switch (mode) {
        case SortMode::name:
        case SortMode::recentlyUpdated:
            return 0;
        case SortMode::cleanFirst:
            return facts.needsAttention(domain) ? 1 : 0;
        case SortMode::dirtyFirst:
            return facts.needsAttention(domain) ? 0 : 1;
        case SortMode::issuePriority:
            return -issuePriority(facts.issueCounts());
        case SortMode::mostIssues:
            return -issueAmount(facts.issueCounts());
    }
    return 0;
}

bool isByActivity(SortMode mode) {
    return mode == SortMode::issuePriority || mode == SortMode::mostIssues ||
           mode == SortMode::recentlyUpdated;
}

Place placeOf(RepositoryFacts& facts, SortMode mode, DomainMode domain) {
    return {.rank = rankOf(facts, mode, domain),
            .date = isByActivity(mode) ? facts.latestIssueActivityDate().value_or(distantPast)
                                       : distantPast,
            .facts = &facts};
}

bool goesBefore(const GitRepository& left, const GitRepository& right, SortMode mode,
                const NameCollator& collator) {
    RepositoryFacts leftFacts(left);
    RepositoryFacts rightFacts(right);
    return placeOf(leftFacts, mode, DomainMode::issues)
        .isBefore(placeOf(rightFacts, mode, DomainMode::issues), collator);
}

bool isKept(RepositoryFacts& facts, const MainView::FilterAndSort& by) {
    if (by.filterMode == FilterMode::dirty) return facts.needsAttention(by.domainMode);
    if (by.domainMode != DomainMode::issues) return true;
    return !facts.repository().issues.empty() || !facts.repository().pullRequests.empty();
}

constexpr std::array sortModesOfIssues = {SortMode::issuePriority, SortMode::mostIssues,
                                          SortMode::recentlyUpdated, SortMode::name};
constexpr std::array sortModesOfOthers = {SortMode::name, SortMode::cleanFirst,
                                          SortMode::dirtyFirst};

std::vector<GitHubIssue> issuesThat(const GitRepository& repo, bool areDashboards) {
    std::vector<GitHubIssue> items;
    std::ranges::copy_if(repo.issues, std::back_inserter(items), [&](const GitHubIssue& issue) {
        return isDashboardIssue(issue) == areDashboards;
    });
    return items;
}

}  // namespace

std::vector<RepositorySnapshot> MainView::filterAndSortRepos(const FilterAndSort& by,
                                                             const NameCollator& collator) {
    RepositoryFactsCache cache;
    return filterAndSortRepos(by, collator, cache);
}

std::vector<RepositorySnapshot> MainView::filterAndSortRepos(const FilterAndSort& by,
                                                             const NameCollator& collator,
                                                             RepositoryFactsCache& cache) {
    struct Kept {
        Place place;
        const RepositorySnapshot* repo;
    };
    const CaseInsensitiveSearch search(by.searchText);
    std::vector<Kept> kept;
    kept.reserve(by.repos.size());
    for (const RepositorySnapshot& repo : by.repos) {
        RepositoryFacts& facts = cache.of(repo);
        if (!isKept(facts, by) || (!by.searchText.empty() && !facts.matches(search))) continue;
        kept.push_back({.place = placeOf(facts, by.sortMode, by.domainMode), .repo = &repo});
    }
    std::ranges::stable_sort(
        kept, [&](const Place& left, const Place& right) { return left.isBefore(right, collator); },
        &Kept::place);
    std::vector<RepositorySnapshot> result;
    result.reserve(kept.size());
    for (const Kept& entry : kept) result.push_back(*entry.repo);
    return result;
}

bool MainView::repoNeedsAttention(const GitRepository& repo, DomainMode domainMode) {
    return RepositoryFacts(repo).needsAttention(domainMode);
}

bool MainView::repoMatchesSearch(const GitRepository& repo, std::string_view searchText) {
    return RepositoryFacts(repo).matches(CaseInsensitiveSearch(searchText));
}

std::vector<GitHubIssue> MainView::realIssueItems(const GitRepository& repo) {
    return issuesThat(repo, false);
}

std::vector<GitHubIssue> MainView::dashboardIssueItems(const GitRepository& repo) {
    return issuesThat(repo, true);
}

bool MainView::compareIssuePriority(const GitRepository& first, const GitRepository& second,
                                    const NameCollator& collator) {
    return goesBefore(first, second, SortMode::issuePriority, collator);
}

bool MainView::compareMostIssues(const GitRepository& first, const GitRepository& second,
                                 const NameCollator& collator) {
    return goesBefore(first, second, SortMode::mostIssues, collator);
}

bool MainView::compareRecentlyUpdated(const GitRepository& first, const GitRepository& second,
                                      const NameCollator& collator) {
    return goesBefore(first, second, SortMode::recentlyUpdated, collator);
}

std::optional<sys_seconds> MainView::latestIssueActivityDate(const GitRepository& repo) {
    return RepositoryFacts(repo).latestIssueActivityDate();
}

std::span<const SortMode> MainView::sortModes(DomainMode domainMode) {
    if (domainMode == DomainMode::issues) return sortModesOfIssues;
    return sortModesOfOthers;
}

SortMode MainView::effectiveSortMode(SortMode stored, DomainMode domainMode) {
    const auto modes = sortModes(domainMode);
    if (std::ranges::find(modes, stored) != modes.end()) return stored;
    return domainMode == DomainMode::issues ? SortMode::issuePriority : SortMode::dirtyFirst;
}

}  // namespace tarnbeck
