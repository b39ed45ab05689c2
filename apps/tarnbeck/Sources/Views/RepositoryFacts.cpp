#include "RepositoryFacts.h"

#include <algorithm>
#include <cstddef>
#include <utility>

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

// The texts of a repository that are searched, one behind the other.
class SearchText {
  public:
    SearchText() { text_.reserve(ordinarySize); }
    void add(std::string_view text) {
        CaseInsensitiveSearch::appendFolded(text, text_);
        text_ += separator;
    }
    void addLabelled(const auto& items) {
        for (const auto& item : items) {
            add(item.title);
            for (const std::string& label : item.labels) add(label);
        }
    }
    std::string take() {
        text_.shrink_to_fit();
        return std::move(text_);
    }

  private:
    static constexpr std::size_t ordinarySize = 4096;
    static constexpr char separator = '\xFF';  // in no text, so that nothing is found across it

    std::string text_;
};

std::string searchTextOf(const GitRepository& repo) {
    SearchText text;
    text.add(repo.name);
    for (const GitBranch& branch : repo.branches) text.add(branch.name);
    for (const std::string& branch : repo.remoteBranches) text.add(branch);
    for (const GitWorktree& worktree : repo.worktrees) {
        text.add(worktree.path);
        if (worktree.branch) text.add(*worktree.branch);
    }
    for (const std::string& tag : repo.tags) text.add(tag);
    for (const FileChange& change : repo.uncommittedChanges) text.add(change.filePath);
    text.addLabelled(repo.issues);
    text.addLabelled(repo.pullRequests);
    for (const auto& result : repo.dependencySummary.ecosystems) {
        for (const DependencyUpdate& update : result.updates) text.add(update.package);
    }
    return text.take();
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

bool RepositoryFacts::matches(const CaseInsensitiveSearch& search) {
    return search.isInFolded(searchText_.orElse([this] { return searchTextOf(repository_); }));
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

void RepositoryFactsCache::dropSearchTexts() {
    for (auto& [repository, entry] : entries_) entry.facts.dropSearchText();
}

void RepositoryFactsCache::dropReplaced(std::size_t present) {
    if (entries_.size() <= present) return;
    std::erase_if(entries_, [](const auto& entry) { return entry.second.repository.expired(); });
}

}  // namespace tarnbeck
