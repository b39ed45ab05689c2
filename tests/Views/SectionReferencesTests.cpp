#include "SectionFixture.h"
#include "SectionOutline.h"

namespace tarnbeck::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// No branches, so that only what a test adds has rows.
GitRepository bareRepository() {
    GitRepository repository = calmRepository();
    repository.branches = {};
    return repository;
}

std::vector<std::string> numberedNames(const std::string& prefix, int count) {
    std::vector<std::string> result;
    for (int number = 1; number <= count; ++number) {
        result.push_back(fmt::format("{}{}", prefix, number));
    }
    return result;
}

std::string outlineOf(const std::vector<Row>& rows) {
    std::string text;
    for (const Row& row : rows) text += outline(row);
    return text;
}

// --- Alerts ---

TEST(AlertRows, TellOfABrokenConfigurationAndThenOfADetachedHead) {
    GitRepository repository = bareRepository();
    repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    repository.isDetachedHead = true;
    repository.currentBranch = "1a2b3c4";
    EXPECT_EQ(
        outlineOf(rowsOf(repository, gitOnly())),
        R"(alert (exclamationmark.octagon orange) "Git config issue: core.bare=true despite an existing worktree"
    says "Warning: Git config issue: core.bare=true despite an existing worktree"
alert (exclamationmark.triangle red) "Detached HEAD at 1a2b3c4"
    says "Warning: Detached HEAD at 1a2b3c4"
)");
}

TEST(AlertRows, DetachedHeadWithoutAHashIsAtAnUnknownPlace) {
    GitRepository repository = bareRepository();
    repository.isDetachedHead = true;
    repository.currentBranch = std::nullopt;
    EXPECT_THAT(titlesOf(rowsOf(repository, gitOnly())), ElementsAre("Detached HEAD at unknown"));
}

// --- Worktrees ---

TEST(WorktreesSection, ShowsTheLinkedOnesByTheirLabels) {
    GitRepository repository = bareRepository();
    repository.worktrees = {
        {.path = "/work/lake", .branch = "main", .isMainWorktree = true},
        {.path = "/work/bare", .isBare = true},
        {.path = "/work/fix", .branch = "fix"},
        {.path = "/work/old", .commitHash = "0123456789abcdef", .isDetached = true},
        {.path = "/work/odd", .isDetached = true}};
    EXPECT_EQ(outlineOf(rowsOf(repository, gitOnly())),
              R"(subsection [v] (folder.badge.gearshape) "Worktrees" 3
    says "Worktrees, 3, expanded"
    click toggle "Hide Worktrees"
  worktree (folder.fill) "fix"
      says "Worktree fix, at /work/fix"
      copy (doc.on.doc) "Copy worktree label" -> "fix", then "Worktree label copied"
  worktree (folder.fill) "detached @ 0123456"
      says "Worktree detached @ 0123456, at /work/old"
      copy (doc.on.doc) "Copy worktree label" -> "detached @ 0123456", then "Worktree label copied"
  worktree (folder.fill) "detached"
      says "Worktree detached, at /work/odd"
      copy (doc.on.doc) "Copy worktree label" -> "detached", then "Worktree label copied"
)");
}

TEST(WorktreesSection, ClosedShowsNone) {
    GitRepository repository = bareRepository();
    repository.worktrees = {{.path = "/work/fix", .branch = "fix"}};
    SectionState state;
    state.showWorktrees = false;
    EXPECT_THAT(titlesOf(rowsOf(repository, gitOnly(), state)), ElementsAre("Worktrees"));
}

TEST(WorktreesSection, IsNotThereWithoutLinkedOnes) {
    GitRepository repository = bareRepository();
    repository.tags = {"v1"};
    repository.worktrees = {{.path = "/work/lake", .isMainWorktree = true}};
    EXPECT_THAT(titlesOf(rowsOf(repository, gitOnly(), {})), ElementsAre("Tags"));
}

// --- Remote branches ---

TEST(RemoteSection, ShowsTheVisibleBranches) {
    GitRepository repository = bareRepository();
    repository.remoteBranches = {"origin/HEAD", "origin/main", "origin/fix"};
    EXPECT_EQ(outlineOf(rowsOf(repository, gitOnly())),
              R"(subsection [v] (cloud) "Remote" 1
    says "Remote, 1, expanded"
    click toggle "Hide Remote"
  remoteBranch (cloud) "origin/fix"
      says "Remote branch origin/fix"
      copy (doc.on.doc) "Copy remote branch name" -> "origin/fix", then "Remote branch copied"
)");
}

TEST(RemoteSection, ShowsTenAndCountsTheRest) {
    GitRepository repository = bareRepository();
    repository.remoteBranches = numberedNames("origin/b", 10);
    EXPECT_EQ(rowsOf(repository, gitOnly()).size(), 1U + 10U);
    repository.remoteBranches = numberedNames("origin/b", 12);
    const auto rows = rowsOf(repository, gitOnly());
    EXPECT_EQ(rows.front().countLabel, "12");
    EXPECT_EQ(rowsOfKind(rows, Row::Kind::remoteBranch).size(), 10U);
    EXPECT_EQ(outline(rows.back()), R"(  more "… and 2 more" secondary
      says "And 2 more remote branches"
)");
}

TEST(RemoteSection, IsClosedAtFirst) {
    GitRepository repository = bareRepository();
    repository.remoteBranches = {"origin/fix"};
    EXPECT_THAT(titlesOf(rowsOf(repository, gitOnly(), {})), ElementsAre("Remote"));
}

TEST(RemoteSection, IsNotThereWhereItIsNotAskedFor) {
    GitRepository repository = bareRepository();
    repository.remoteBranches = {"origin/fix"};
    repository.tags = {"v1"};
    SectionFlags flags = gitOnly();
    flags.showRemotes = false;
    EXPECT_THAT(titlesOf(rowsOf(repository, flags, {})), ElementsAre("Tags"));
}

TEST(RemoteSection, IsNotThereWithoutVisibleBranches) {
    GitRepository repository = bareRepository();
    repository.remoteBranches = {"origin/main"};
    repository.tags = {"v1"};
    EXPECT_THAT(titlesOf(rowsOf(repository, gitOnly(), {})), ElementsAre("Tags"));
}

// --- Tags ---

TEST(TagsSection, ShowsTenAndCountsTheRest) {
    GitRepository repository = bareRepository();
    repository.tags = numberedNames("v", 11);
    const auto rows = rowsOf(repository, gitOnly());
    EXPECT_EQ(outline(rows[0]), R"(subsection [v] (tag) "Tags" 11
    says "Tags, 11, expanded"
    click toggle "Hide Tags"
)");
    EXPECT_EQ(outline(rows[1]), R"(  tag (tag) "v1"
      says "Tag v1"
      copy (doc.on.doc) "Copy tag name" -> "v1", then "Tag name copied"
)");
    EXPECT_EQ(rowsOfKind(rows, Row::Kind::tag).size(), 10U);
    EXPECT_EQ(outline(rows.back()), R"(  more "… and 1 more" secondary
      says "And 1 more tag"
)");
}

TEST(TagsSection, IsClosedAtFirst) {
    GitRepository repository = bareRepository();
    repository.tags = {"v1"};
    EXPECT_THAT(titlesOf(rowsOf(repository, gitOnly(), {})), ElementsAre("Tags"));
}

TEST(TagsSection, IsNotThereWhereItIsNotAskedFor) {
    GitRepository repository = bareRepository();
    repository.tags = {"v1"};
    repository.stashCount = 1;
    SectionFlags flags = gitOnly();
    flags.showTags = false;
    EXPECT_THAT(titlesOf(rowsOf(repository, flags, {})), ElementsAre("Stashes"));
}

// --- Stashes ---

TEST(StashSection, ShowsSubjectAndReference) {
    GitRepository repository = bareRepository();
    repository.stashCount = 2;
    repository.stashes = {{"stash@{0}", "WIP on main"}, {"stash@{1}", ""}};
    EXPECT_EQ(outlineOf(rowsOf(repository, gitOnly())),
              R"(subsection [v] (tray.full) "Stashes" 2
    says "Stashes, 2, expanded"
    click toggle "Hide Stashes"
  stash (tray.full) "WIP on main" {stash@{0}}
      says "Stash stash@{0}, WIP on main"
      copy (doc.on.doc) "Copy stash reference" -> "stash@{0}", then "Stash reference copied"
  stash (tray.full) "No stash message" secondary {stash@{1}}
      says "Stash stash@{1}, No stash message"
      copy (doc.on.doc) "Copy stash reference" -> "stash@{1}", then "Stash reference copied"
)");
}

TEST(StashSection, CountWithoutAnyParsedStashSaysThatDetailsAreUnavailable) {
    GitRepository repository = bareRepository();
    repository.stashCount = 2;
    const auto rows = rowsOf(repository, gitOnly());
    EXPECT_EQ(rows.front().countLabel, "2");
    EXPECT_EQ(outline(rows.back()),
              R"(  state (exclamationmark.circle) "Stash details unavailable" secondary
      says "Stash details unavailable"
)");
}

TEST(StashSection, IsClosedAtFirst) {
    GitRepository repository = bareRepository();
    repository.stashCount = 1;
    EXPECT_THAT(titlesOf(rowsOf(repository, gitOnly(), {})), ElementsAre("Stashes"));
}

TEST(StashSection, IsNotThereWithoutStashes) {
    EXPECT_THAT(rowsOf(bareRepository(), gitOnly()), IsEmpty());
}

// --- All together ---

TEST(GitDetails, SectionsStandInTheirOrder) {
    GitRepository repository = calmRepository();
    repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    repository.worktrees = {{.path = "/work/fix", .branch = "fix"}};
    repository.remoteBranches = {"origin/fix"};
    repository.tags = {"v1"};
    repository.stashCount = 1;
    SectionState state;
    state.showBranches = false;
    state.showWorktrees = false;
    EXPECT_THAT(
        titlesOf(rowsOf(repository, flagsOf(DomainMode::git), state)),
        ElementsAre("Git config issue: core.bare=true despite an existing worktree", "Branches",
                    "Worktrees", "Remote", "Tags", "Stashes", "Issues", "Pull Requests"));
}

TEST(GitDetails, AreNotThereWhileTheSectionIsClosed) {
    SectionFlags flags = gitOnly();
    flags.isExpanded = false;
    EXPECT_THAT(rowsOf(calmRepository(), flags), IsEmpty());
}

TEST(GitDetails, OfARepositoryWithABrokenConfigurationAloneAreNotThere) {
    GitRepository repository = bareRepository();
    repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    EXPECT_THAT(rowsOf(repository, gitOnly()), IsEmpty());
}

TEST(GitDetails, AreNotThereInTheDomainOfDependencies) {
    EXPECT_THAT(rowsOf(calmRepository(), flagsOf(DomainMode::dependencies)), IsEmpty());
}

}  // namespace
}  // namespace tarnbeck::testing
