#include "RepositoryFacts.h"

#include <algorithm>

#include "CaseInsensitiveSearch.h"
#include "Dates.h"
#include "Text.h"

namespace tarnbeck {
namespace {

using ActivityDate = std::optional<std::chrono::sys_seconds>;

bool gitNeedsAttention(const GitRepository& repository) {
    const GitSyncStatus& sync = repository.syncStatus;
    return repository.gitConfigurationIssue || !repository.isClean() ||
           sync.is<GitSyncStatus::Ahead>() || sync.is<GitSyncStatus::Behind>() ||
           sync.is<GitSyncStatus::Diverged>();
}

bool dependenciesNeedAttention(const DependencySummary& summary) {
    return summary.actionableUpdateCount() > 0 || summary.constraintCount() > 0 ||
           summary.hasErrors() || summary.hasSyncNeeded() ||
           summary.status() == DependencyHealth::checking;
}

RepositoryFacts::IssueCounts countsOf(const GitRepository& repository) {
    const auto dashboard = std::ranges::count_if(repository.issues, isDashboardIssue);
    return {.real = static_cast<std::int64_t>(repository.issues.size()) - dashboard,
            .dashboard = dashboard,
            .pullRequests = static_cast<std::int64_t>(repository.pullRequests.size())};
}

template <class Item>
ActivityDate latestOf(const ImmutableList<Item>& items) {
    ActivityDate latest;
    for (const Item& item : items) {
        latest =
            std::max(latest, dateFromIso8601(item.updatedAt ? *item.updatedAt : item.createdAt));
    }
    return latest;
}

bool anyLabelled(const auto& items, const CaseInsensitiveSearch& search) {
    return std::ranges::any_of(items, [&](const auto& item) {
        return search.isIn(item.title) ||
               std::ranges::any_of(item.labels,
                                   [&](const std::string& label) { return search.isIn(label); });
    });
}

bool anyUpdateIn(const DependencySummary& summary, const CaseInsensitiveSearch& search) {
    return std::ranges::any_of(summary.ecosystems, [&](const DependencyEcosystemResult& result) {
        return std::ranges::any_of(result.updates, [&](const DependencyUpdate& update) {
            return search.isIn(update.package);
        });
    });
}

bool contains(const GitRepository& repo, const CaseInsensitiveSearch& search) {
    const auto isIn = [&](const std::string& text) { return search.isIn(text); };
    return isIn(repo.name) || std::ranges::any_of(repo.branches, isIn, &GitBranch::name) ||
           std::ranges::any_of(repo.remoteBranches, isIn) ||
           std::ranges::any_of(repo.worktrees,
                               [&](const GitWorktree& worktree) {
                                   return isIn(worktree.path) ||
                                          (worktree.branch && isIn(*worktree.branch));
                               }) ||
           std::ranges::any_of(repo.tags, isIn) ||
           std::ranges::any_of(repo.uncommittedChanges, isIn, &FileChange::filePath) ||
           anyLabelled(repo.issues, search) || anyLabelled(repo.pullRequests, search) ||
           anyUpdateIn(repo.dependencySummary, search);
}

}  // namespace

bool isDashboardIssue(const GitHubIssue& issue) {
    static const CaseInsensitiveSearch title("Dependency Dashboard");
    return title.isAllOf(trimmingWhitespaceAndNewlines(issue.title));
}

bool RepositoryFacts::needsAttention(DomainMode domain) {
    switch (domain) {
        case DomainMode::git:
            return needsGitAttention();
        case DomainMode::issues:
            return needsIssueAttention();
        case DomainMode::dependencies:
            return needsDependencyAttention();
        case DomainMode::combined:
            // Here the bot's list counts too, so that nothing that is open is passed over.
            return needsGitAttention() || !repository_.issues.empty() ||
                   !repository_.pullRequests.empty() || needsDependencyAttention();
    }
    return false;
}

bool RepositoryFacts::needsGitAttention() {
    return needsGitAttention_.orElse([this] { return gitNeedsAttention(repository_); });
}

bool RepositoryFacts::needsDependencyAttention() {
    return needsDependencyAttention_.orElse(
        [this] { return dependenciesNeedAttention(repository_.dependencySummary); });
}

bool RepositoryFacts::needsIssueAttention() {
    return issueCounts().real > 0 || issueCounts().pullRequests > 0;
}

const RepositoryFacts::IssueCounts& RepositoryFacts::issueCounts() {
    return issueCounts_.orElse([this] { return countsOf(repository_); });
}

ActivityDate RepositoryFacts::latestIssueActivityDate() {
    return latestIssueActivityDate_.orElse([this] {
        return std::max(latestOf(repository_.issues), latestOf(repository_.pullRequests));
    });
}

const std::string& RepositoryFacts::nameKey(const NameCollator& collator) {
    return nameKey_.orElse([&] { return collator.sortKey(repository_.name); });
}

bool RepositoryFacts::matches(const CaseInsensitiveSearch& search, std::string_view searchText) {
    if (searchText_ != searchText) {
        searchText_ = searchText;
        isMatch_ = contains(repository_, search);
    }
    return isMatch_;
}

RepositoryFacts& RepositoryFactsCache::of(const RepositorySnapshot& repository) {
    const auto found = entries_.find(repository.get());
    if (found != entries_.end()) {
        // Another snapshot may lie where one was that has gone.
        if (!found->second.repository.expired()) return found->second.facts;
        entries_.erase(found);
    }
    return entries_
        .emplace(repository.get(),
                 Entry{.repository = repository, .facts = RepositoryFacts(*repository)})
        .first->second.facts;
}

void RepositoryFactsCache::dropReplaced(std::size_t present) {
    if (entries_.size() <= present) return;
    std::erase_if(entries_, [](const auto& entry) { return entry.second.repository.expired(); });
}

}  // namespace tarnbeck
