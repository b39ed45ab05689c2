#include "GitRepository.h"

namespace tarnbeck {
namespace {

const GitWorktree mainWorktree{.path = "/r", .branch = "main", .isMainWorktree = true};
const GitWorktree linkedWorktree{.path = "/r-fix", .branch = "fix"};

GitRepository tidyRepository() {
    return {.path = "/r",
            .name = "r",
            .currentBranch = "main",
            .branches = {{"main", true}},
            .worktrees = {mainWorktree},
            .syncStatus = GitSyncStatus::UpToDate{"origin/main"}};
}

GitRepository detached(GitRepository repository) {
    repository.isDetachedHead = true;
    return repository;
}

GitRepository changed(GitRepository repository) {
    repository.uncommittedChanges = {{"M", "file"}};
    return repository;
}

GitRepository misconfigured(GitRepository repository) {
    repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    return repository;
}

GitRepository withUpstream(GitRepository repository, GitSyncStatus status) {
    repository.syncStatus = std::move(status);
    return repository;
}

GitRepository withBranch(GitRepository repository, const std::string& name) {
    repository.branches = {{name, true}};
    return repository;
}

const GitSyncStatus aheadByOne = GitSyncStatus::Ahead{"origin/main", 1};
const GitSyncStatus behindByOne = GitSyncStatus::Behind{"origin/main", 1};
const GitSyncStatus divergedByOne = GitSyncStatus::Diverged{"origin/main", 1, 1};

TEST(GitRepository_IsClean, OneWithOnlyMainIs) {
    EXPECT_TRUE(tidyRepository().isClean());
}

TEST(GitRepository_IsClean, OneWithOnlyMasterIs) {
    EXPECT_TRUE(withBranch(tidyRepository(), "master").isClean());
}

TEST(GitRepository_IsClean, OneWithMainAndMasterIs) {
    auto repository = tidyRepository();
    repository.branches = {{"main", true}, {"master", false}};
    EXPECT_TRUE(repository.isClean());
}

TEST(GitRepository_IsClean, OneWithoutAnyBranchIs) {
    auto repository = tidyRepository();
    repository.branches = {};
    EXPECT_TRUE(repository.isClean());
}

TEST(GitRepository_IsClean, SingleBranchOfAnotherNameIsNot) {
    EXPECT_FALSE(withBranch(tidyRepository(), "develop").isClean());
}

TEST(GitRepository_IsClean, FurtherBranchBesideMainIsNot) {
    auto repository = tidyRepository();
    repository.branches = {{"main", true}, {"fix", false}};
    EXPECT_FALSE(repository.isClean());
}

TEST(GitRepository_IsClean, NamesOfBranchesAreComparedWithTheirCase) {
    EXPECT_FALSE(withBranch(tidyRepository(), "Main").isClean());
}

TEST(GitRepository_IsClean, VisibleWorktreeMakesItUnclean) {
    auto repository = tidyRepository();
    repository.worktrees = {mainWorktree, linkedWorktree};
    EXPECT_FALSE(repository.isClean());
}

TEST(GitRepository_IsClean, BareWorktreeDoesNotMatter) {
    auto repository = tidyRepository();
    repository.worktrees = {mainWorktree, {.path = "/bare", .isBare = true}};
    EXPECT_TRUE(repository.isClean());
}

TEST(GitRepository_IsClean, ChangeMakesItUnclean) {
    EXPECT_FALSE(changed(tidyRepository()).isClean());
}

TEST(GitRepository_IsClean, DetachedHeadMakesItUnclean) {
    EXPECT_FALSE(detached(tidyRepository()).isClean());
}

TEST(GitRepository_IsClean, StashMakesItUnclean) {
    auto repository = tidyRepository();
    repository.stashCount = 1;
    EXPECT_FALSE(repository.isClean());
}

TEST(GitRepository_IsClean, ConfigurationIssueMakesItUnclean) {
    EXPECT_FALSE(misconfigured(tidyRepository()).isClean());
}

TEST(GitRepository_IsClean, UpstreamPlaysNoPart) {
    for (const auto& status : {aheadByOne, behindByOne, divergedByOne, GitSyncStatus{}}) {
        EXPECT_TRUE(withUpstream(tidyRepository(), status).isClean()) << status.badgeValue();
    }
}

TEST(GitRepository_IsClean, TagsAndRemoteBranchesPlayNoPart) {
    auto repository = tidyRepository();
    repository.tags = {"v1"};
    repository.remoteBranches = {"origin/fix"};
    EXPECT_TRUE(repository.isClean());
}

TEST(GitRepository_IsClean, DependenciesPlayNoPart) {
    auto repository = tidyRepository();
    repository.dependencySummary.ecosystems = {
        {.manager = "npm", .status = DependencyHealth::error}};
    EXPECT_TRUE(repository.isClean());
}

TEST(GitRepository_IsClean, IssuesAndPullRequestsPlayNoPart) {
    auto repository = tidyRepository();
    repository.issues = {{.id = 1, .number = 1}};
    repository.pullRequests = {{.id = 2, .number = 2}};
    EXPECT_TRUE(repository.isClean());
}

TEST(GitRepository_StatusIcon, ConfigurationIssueComesBeforeDetachedHead) {
    EXPECT_EQ(misconfigured(detached(tidyRepository())).statusIcon(),
              "exclamationmark.triangle.fill");
}

TEST(GitRepository_StatusIcon, DetachedHeadComesBeforeChanges) {
    EXPECT_EQ(detached(changed(tidyRepository())).statusIcon(), "exclamationmark.octagon.fill");
}

TEST(GitRepository_StatusIcon, ChangesComeBeforeTheUpstream) {
    EXPECT_EQ(changed(withUpstream(tidyRepository(), aheadByOne)).statusIcon(),
              "pencil.circle.fill");
}

TEST(GitRepository_StatusIcon, AheadComesBeforeClean) {
    EXPECT_EQ(withUpstream(tidyRepository(), aheadByOne).statusIcon(), "arrow.up.circle.fill");
}

TEST(GitRepository_StatusIcon, BehindComesBeforeClean) {
    EXPECT_EQ(withUpstream(tidyRepository(), behindByOne).statusIcon(), "arrow.down.circle.fill");
}

TEST(GitRepository_StatusIcon, DivergedComesBeforeClean) {
    EXPECT_EQ(withUpstream(tidyRepository(), divergedByOne).statusIcon(),
              "arrow.left.arrow.right.circle.fill");
}

TEST(GitRepository_StatusIcon, CleanOneShowsACheckmark) {
    EXPECT_EQ(tidyRepository().statusIcon(), "checkmark.circle.fill");
}

TEST(GitRepository_StatusIcon, AllElseShowsAWarning) {
    EXPECT_EQ(withBranch(tidyRepository(), "fix").statusIcon(), "exclamationmark.triangle.fill");
}

TEST(GitRepository_StatusColor, ConfigurationIssueIsOrangeBeforeAllElse) {
    EXPECT_EQ(misconfigured(detached(changed(tidyRepository()))).statusColor(),
              StatusColor::orange);
}

TEST(GitRepository_StatusColor, DetachedHeadIsRedBeforeTheUpstream) {
    EXPECT_EQ(detached(withUpstream(tidyRepository(), behindByOne)).statusColor(),
              StatusColor::red);
}

TEST(GitRepository_StatusColor, ChangesAreRedBeforeTheUpstream) {
    EXPECT_EQ(changed(withUpstream(tidyRepository(), aheadByOne)).statusColor(), StatusColor::red);
}

TEST(GitRepository_StatusColor, DetachedHeadWithChangesIsRed) {
    EXPECT_EQ(detached(changed(tidyRepository())).statusColor(), StatusColor::red);
}

TEST(GitRepository_StatusColor, BehindIsYellow) {
    EXPECT_EQ(withUpstream(tidyRepository(), behindByOne).statusColor(), StatusColor::yellow);
}

TEST(GitRepository_StatusColor, DivergedIsYellow) {
    EXPECT_EQ(withUpstream(tidyRepository(), divergedByOne).statusColor(), StatusColor::yellow);
}

TEST(GitRepository_StatusColor, AheadIsOrangeThoughClean) {
    EXPECT_EQ(withUpstream(tidyRepository(), aheadByOne).statusColor(), StatusColor::orange);
}

TEST(GitRepository_StatusColor, CleanIsGreen) {
    EXPECT_EQ(tidyRepository().statusColor(), StatusColor::green);
}

TEST(GitRepository_StatusColor, AllElseIsOrange) {
    EXPECT_EQ(withBranch(tidyRepository(), "fix").statusColor(), StatusColor::orange);
}

}  // namespace
}  // namespace tarnbeck
