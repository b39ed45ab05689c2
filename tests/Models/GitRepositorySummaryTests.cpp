#include "GitRepository.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;

TEST(GitRepository_SummaryParts, CleanRepositoryOnMainHasNone) {
    EXPECT_THAT((GitRepository{.branches = {{"main", true}}}.summaryParts()), ElementsAre());
}

TEST(GitRepository_SummaryParts, ConfigurationIssueIsNamed) {
    const GitRepository repository{.gitConfigurationIssue =
                                       GitConfigurationIssue::coreBareWorktreeMismatch};
    EXPECT_THAT(repository.summaryParts(), ElementsAre("git config issue"));
}

TEST(GitRepository_SummaryParts, OneBranchIsCountedInTheSingular) {
    EXPECT_THAT((GitRepository{.branches = {{"fix", true}}}.summaryParts()),
                ElementsAre("1 branch"));
}

TEST(GitRepository_SummaryParts, SeveralBranchesAreCountedInThePlural) {
    EXPECT_THAT((GitRepository{.branches = {{"fix", true}, {"try", false}}}.summaryParts()),
                ElementsAre("2 branches"));
}

TEST(GitRepository_SummaryParts, MainAndMasterAreNoBranchesToCount) {
    const GitRepository repository{.branches = {{"fix", false}, {"main", true}, {"master", false}}};
    EXPECT_THAT(repository.summaryParts(), ElementsAre("1 branch"));
}

TEST(GitRepository_SummaryParts, OneWorktreeIsCountedInTheSingular) {
    EXPECT_THAT((GitRepository{.worktrees = {{.path = "/w"}}}.summaryParts()),
                ElementsAre("1 worktree"));
}

TEST(GitRepository_SummaryParts, SeveralWorktreesAreCountedInThePlural) {
    EXPECT_THAT((GitRepository{.worktrees = {{.path = "/w"}, {.path = "/x"}}}.summaryParts()),
                ElementsAre("2 worktrees"));
}

TEST(GitRepository_SummaryParts, MainAndBareWorktreesAreNotCounted) {
    const GitRepository repository{
        .worktrees = {{.path = "/w", .isMainWorktree = true}, {.path = "/b", .isBare = true}}};
    EXPECT_THAT(repository.summaryParts(), ElementsAre());
}

TEST(GitRepository_SummaryParts, OneChangeIsCountedInTheSingular) {
    EXPECT_THAT((GitRepository{.uncommittedChanges = {{"M", "a"}}}.summaryParts()),
                ElementsAre("1 change"));
}

TEST(GitRepository_SummaryParts, SeveralChangesAreCountedInThePlural) {
    EXPECT_THAT((GitRepository{.uncommittedChanges = {{"M", "a"}, {"D", "b"}}}.summaryParts()),
                ElementsAre("2 changes"));
}

TEST(GitRepository_SummaryParts, UpstreamSpeaksWhereItHasALabel) {
    EXPECT_THAT((GitRepository{.syncStatus = GitSyncStatus::Behind{"o/m", 3}}.summaryParts()),
                ElementsAre("behind 3"));
}

TEST(GitRepository_SummaryParts, UpstreamIsSilentWhereItHasNoLabel) {
    for (const GitSyncStatus& status :
         {GitSyncStatus{GitSyncStatus::UpToDate{"o/m"}}, GitSyncStatus{GitSyncStatus::NoUpstream{}},
          GitSyncStatus{GitSyncStatus::Unknown{}}}) {
        EXPECT_THAT((GitRepository{.syncStatus = status}.summaryParts()), ElementsAre());
    }
}

TEST(GitRepository_SummaryParts, DetachedHeadIsNamed) {
    EXPECT_THAT((GitRepository{.isDetachedHead = true}.summaryParts()),
                ElementsAre("detached HEAD"));
}

TEST(GitRepository_SummaryParts, OneStashIsCountedInTheSingular) {
    EXPECT_THAT((GitRepository{.stashCount = 1}.summaryParts()), ElementsAre("1 stash"));
}

TEST(GitRepository_SummaryParts, SeveralStashesAreCountedInThePlural) {
    EXPECT_THAT((GitRepository{.stashCount = 2}.summaryParts()), ElementsAre("2 stashes"));
}

TEST(GitRepository_SummaryParts, OneIssueIsCountedInTheSingular) {
    EXPECT_THAT((GitRepository{.issues = {{.id = 1}}}.summaryParts()), ElementsAre("1 issue"));
}

TEST(GitRepository_SummaryParts, SeveralIssuesAreCountedInThePlural) {
    EXPECT_THAT((GitRepository{.issues = {{.id = 1}, {.id = 2}}}.summaryParts()),
                ElementsAre("2 issues"));
}

TEST(GitRepository_SummaryParts, OnePullRequestIsCountedInTheSingular) {
    EXPECT_THAT((GitRepository{.pullRequests = {{.id = 1}}}.summaryParts()), ElementsAre("1 PR"));
}

TEST(GitRepository_SummaryParts, SeveralPullRequestsAreCountedInThePlural) {
    EXPECT_THAT((GitRepository{.pullRequests = {{.id = 1}, {.id = 2}}}.summaryParts()),
                ElementsAre("2 PRs"));
}

TEST(GitRepository_SummaryParts, AllStandInTheirFixedOrder) {
    const GitRepository repository{
        .isDetachedHead = true,
        .branches = {{"fix", true}},
        .worktrees = {{.path = "/w"}},
        .uncommittedChanges = {{"M", "a"}},
        .stashCount = 1,
        .syncStatus = GitSyncStatus::Diverged{"o/m", 2, 3},
        .gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch,
        .issues = {{.id = 1}},
        .pullRequests = {{.id = 2}}};
    EXPECT_THAT(repository.summaryParts(),
                ElementsAre("git config issue", "1 branch", "1 worktree", "1 change",
                            "diverged (2↑ 3↓)", "detached HEAD", "1 stash", "1 issue", "1 PR"));
}

}  // namespace
}  // namespace tarnbeck
