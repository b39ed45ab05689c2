#include <unordered_set>

#include "GitHubRepositoryData.h"
#include "GitRepository.h"

namespace tarnbeck {
namespace {

template <class Type>
std::size_t hashOf(const Type& value) {
    return std::hash<Type>{}(value);
}

// Holds when each variation differs from the base and from all others, in value and in hash, and
// when a copy does not.
template <class Type>
void expectEachToDiffer(const Type& base, const std::vector<Type>& variations) {
    EXPECT_EQ(base, Type(base));
    EXPECT_EQ(hashOf(base), hashOf(Type(base)));
    std::unordered_set<std::size_t> hashes = {hashOf(base)};
    for (const Type& variation : variations) {
        EXPECT_NE(variation, base);
        EXPECT_TRUE(hashes.insert(hashOf(variation)).second);
    }
}

// One copy of `base` a setter, changed by it.
template <class Type, class... Setters>
std::vector<Type> variationsOf(const Type& base, Setters... setters) {
    std::vector<Type> variations;
    const auto add = [&](auto set) { set(variations.emplace_back(base)); };
    (add(setters), ...);
    return variations;
}

TEST(Records_Equality, EveryFieldOfABranchCounts) {
    expectEachToDiffer<GitBranch>({"main", true}, {{"fix", true}, {"main", false}});
}

TEST(Records_Equality, EveryFieldOfAStashCounts) {
    expectEachToDiffer<GitStash>({"stash@{0}", "a"}, {{"stash@{1}", "a"}, {"stash@{0}", "b"}});
}

TEST(Records_Equality, EveryFieldOfAChangeCounts) {
    expectEachToDiffer<FileChange>({"M", "a"}, {{"A", "a"}, {"M", "b"}});
}

TEST(Records_Equality, EveryFieldOfAWorktreeCounts) {
    const GitWorktree base{.path = "/r"};
    expectEachToDiffer(base, variationsOf(
                                 base, [](GitWorktree& worktree) { worktree.path = "/s"; },
                                 [](GitWorktree& worktree) { worktree.branch = "main"; },
                                 [](GitWorktree& worktree) { worktree.commitHash = "abc"; },
                                 [](GitWorktree& worktree) { worktree.isBare = true; },
                                 [](GitWorktree& worktree) { worktree.isDetached = true; },
                                 [](GitWorktree& worktree) { worktree.isMainWorktree = true; },
                                 [](GitWorktree& worktree) {
                                     worktree.changes = {{"M", "a"}};
                                 }));
}

TEST(Records_Equality, EveryFieldOfAnIssueCounts) {
    const GitHubIssue base{.id = 1, .number = 1};
    expectEachToDiffer(base, variationsOf(
                                 base, [](GitHubIssue& issue) { issue.id = 2; },
                                 [](GitHubIssue& issue) { issue.number = 2; },
                                 [](GitHubIssue& issue) { issue.title = "a"; },
                                 [](GitHubIssue& issue) { issue.state = "CLOSED"; },
                                 [](GitHubIssue& issue) { issue.labels = {"bug"}; },
                                 [](GitHubIssue& issue) { issue.author = "ann"; },
                                 [](GitHubIssue& issue) { issue.createdAt = "2026"; },
                                 [](GitHubIssue& issue) { issue.updatedAt = "2026"; },
                                 [](GitHubIssue& issue) { issue.url = "https://x"; }));
}

TEST(Records_Equality, DraftFlagOfAPullRequestCounts) {
    expectEachToDiffer<GitHubPullRequest>({.id = 1}, {{.id = 1, .isDraft = true}});
}

TEST(Records_Equality, EveryFieldOfADependencyUpdateCounts) {
    const DependencyUpdate base{.package = "react"};
    expectEachToDiffer(
        base,
        variationsOf(
            base, [](DependencyUpdate& update) { update.ecosystem = DependencyEcosystem::python; },
            [](DependencyUpdate& update) { update.package = "vue"; },
            [](DependencyUpdate& update) { update.currentVersion = "1"; },
            [](DependencyUpdate& update) { update.latestVersion = "1"; },
            [](DependencyUpdate& update) { update.updateType = DependencyUpdateType::major; },
            [](DependencyUpdate& update) { update.origin = DependencyUpdateOrigin::venvOnly; }));
}

TEST(Records_Equality, EveryFieldOfADependencyResultCounts) {
    using Result = DependencyEcosystemResult;
    const Result base{.manager = "npm"};
    expectEachToDiffer(
        base, variationsOf(
                  base, [](Result& result) { result.ecosystem = DependencyEcosystem::python; },
                  [](Result& result) { result.project = "."; },
                  [](Result& result) { result.manager = "pip"; },
                  [](Result& result) { result.status = DependencyHealth::error; },
                  [](Result& result) { result.updates = {{.package = "react"}}; },
                  [](Result& result) { result.message = "m"; }));
}

TEST(Records_Equality, EveryFieldOfASummaryCounts) {
    const DependencySummary base;
    expectEachToDiffer(
        base,
        variationsOf(
            base, [](DependencySummary& summary) { summary.ecosystems = {{.manager = "npm"}}; },
            [](DependencySummary& summary) { summary.checkedAt = Date{}; }));
}

TEST(Records_Equality, EveryFieldOfASnapshotCounts) {
    const GitRepository base{.path = "/r", .name = "r"};
    using Repository = GitRepository;
    const auto issue = GitConfigurationIssue::coreBareWorktreeMismatch;
    expectEachToDiffer(
        base,
        variationsOf(
            base, [](Repository& repository) { repository.path = "/s"; },
            [](Repository& repository) { repository.name = "s"; },
            [](Repository& repository) { repository.currentBranch = "main"; },
            [](Repository& repository) { repository.isDetachedHead = true; },
            [](Repository& repository) {
                repository.branches = {{"main", true}};
            },
            [](Repository& repository) { repository.remoteBranches = {"o/m"}; },
            [](Repository& repository) { repository.gitHubOwnerRepos = {"o/r"}; },
            [](Repository& repository) { repository.worktrees = {{.path = "/w"}}; },
            [](Repository& repository) { repository.tags = {"v1"}; },
            [](Repository& repository) {
                repository.uncommittedChanges = {{"M", "a"}};
            },
            [](Repository& repository) { repository.stashCount = 1; },
            [](Repository& repository) {
                repository.stashes = {{"stash@{0}", "a"}};
            },
            [](Repository& repository) { repository.syncStatus = GitSyncStatus::NoUpstream{}; },
            [issue](Repository& repository) { repository.gitConfigurationIssue = issue; },
            [](Repository& repository) {
                repository.dependencySummary.ecosystems = {{.manager = "npm"}};
            },
            [](Repository& repository) { repository.issues = {{.id = 1}}; },
            [](Repository& repository) { repository.pullRequests = {{.id = 1}}; }));
}

TEST(Records_Equality, EveryFieldOfAnIssueAnswerCounts) {
    const GitHubRepositoryData issues{.issues = {{.id = 1}}};
    const GitHubRepositoryData pullRequests{.pullRequests = {{.id = 1}}};
    EXPECT_NE(issues, GitHubRepositoryData{});
    EXPECT_NE(pullRequests, GitHubRepositoryData{});
    EXPECT_EQ(issues, GitHubRepositoryData(issues));
}

}  // namespace
}  // namespace tarnbeck
