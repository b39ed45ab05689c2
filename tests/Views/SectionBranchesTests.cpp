#include "RepositoryGitDetails.h"
#include "SectionFixture.h"
#include "SectionOutline.h"

namespace tarnbeck::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

SectionState withOpenBranch(const std::string& branch) {
    SectionState state = allOpen();
    state.branchChangesExpanded[branch] = true;
    return state;
}

GitRepository dirtyRepository(int changes) {
    GitRepository repository = calmRepository();
    repository.uncommittedChanges = modifiedFiles(changes);
    return repository;
}

// "fix" is checked out beside the repository, with changes of its own.
GitRepository withDirtyWorktree() {
    GitRepository repository = calmRepository();
    repository.branches = {{"fix", false}, {"main", true}};
    repository.worktrees = {
        {.path = "/work/lake", .branch = "main", .isMainWorktree = true},
        {.path = "/work/lake-fix", .branch = "fix", .changes = modifiedFiles(1)}};
    return repository;
}

// --- The subsection ---

TEST(BranchesSection, HasItsIconCountAndRefresh) {
    const Row row = rowsOf(calmRepository(), gitOnly()).front();
    EXPECT_EQ(outline(row), R"(subsection [v] (arrow.triangle.branch) "Branches" 1
    says "Branches, 1, expanded"
    click toggle "Hide Branches"
    refreshGit (arrow.clockwise) "Refresh git data for this repository"
)");
}

TEST(BranchesSection, ProgressStandsInThePlaceOfTheRefresh) {
    SectionFlags flags = gitOnly();
    flags.gitReloadInProgress = true;
    EXPECT_EQ(outline(rowsOf(calmRepository(), flags).front().actions.at(0)),
              "refreshGit (arrow.clockwise) \"Refreshing git data…\" in progress");
}

TEST(BranchesSection, RefreshIsNotOfferedWhereNothingWouldDoIt) {
    SectionFlags flags = gitOnly();
    flags.canRefreshGit = false;
    EXPECT_THAT(rowsOf(calmRepository(), flags).front().actions, IsEmpty());
}

TEST(BranchesSection, ClosedShowsNoBranch) {
    SectionState state;
    state.showBranches = false;
    const auto rows = rowsOf(calmRepository(), gitOnly(), state);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].accessibleName, "Branches, 1, collapsed");
    EXPECT_EQ(rows[0].isExpanded, false);
}

TEST(BranchesSection, IsNotThereWithoutBranches) {
    GitRepository repository = calmRepository();
    repository.branches = {};
    repository.tags = {"v1"};
    EXPECT_THAT(titlesOf(rowsOf(repository, gitOnly(), {})), ElementsAre("Tags"));
}

// --- Branches ---

TEST(BranchesSection, BranchesStandInTheModelsOrderAndTheCurrentOneIsMarked) {
    GitRepository repository = calmRepository();
    repository.branches = {{"zebra", false}, {"main", true}, {"ant", false}};
    const auto rows = rowsOfKind(rowsOf(repository, gitOnly()), Row::Kind::branch);
    EXPECT_THAT(titlesOf(rows), ElementsAre("zebra", "main", "ant"));
    EXPECT_EQ(outline(rows[0]), R"(  branch (circle) "zebra"
      says "Branch zebra"
      copy (doc.on.doc) "Copy branch name" -> "zebra", then "Branch name copied"
)");
    EXPECT_EQ(outline(rows[1]), R"(  branch (circle.fill) "main" {current}
      says "Branch main, current"
      copy (doc.on.doc) "Copy branch name" -> "main", then "Branch name copied"
)");
}

TEST(BranchesSection, BranchOfALinkedWorktreeIsMarked) {
    GitRepository repository = withDirtyWorktree();
    repository.worktrees = {{.path = "/work/lake", .branch = "main", .isMainWorktree = true},
                            {.path = "/work/lake-fix", .branch = "fix"}};
    const auto rows = rowsOfKind(rowsOf(repository, gitOnly()), Row::Kind::branch);
    EXPECT_THAT(rows[0].metadata.labels, ElementsAre("worktree"));
    EXPECT_EQ(rows[0].accessibleName, "Branch fix, checked out in a worktree");
    EXPECT_THAT(rows[1].metadata.labels, ElementsAre("current"));
}

TEST(BranchesSection, BranchIsHighlightedWhereItContainsWhatIsSearchedFor) {
    GitRepository repository = calmRepository();
    repository.branches = {{"Feature/Ä", false}, {"main", true}};
    SectionFlags flags = gitOnly();
    flags.searchHighlight = "feature/ä";
    const auto rows = rowsOfKind(rowsOf(repository, flags), Row::Kind::branch);
    EXPECT_TRUE(rows[0].isTitleHighlighted);
    EXPECT_FALSE(rows[1].isTitleHighlighted);
}

// --- Changes ---

TEST(BranchesSection, BranchWithoutChangesHasNoChevronAndNoClick) {
    const Row row = rowTitled(rowsOf(calmRepository(), gitOnly()), "main");
    EXPECT_EQ(row.isExpanded, std::nullopt);
    EXPECT_EQ(row.click, std::nullopt);
}

TEST(BranchesSection, BranchWithChangesIsClosedUntilItIsOpened) {
    const auto rows = rowsOf(dirtyRepository(2), gitOnly());
    EXPECT_EQ(outline(rows.back()), R"(  branch [>] (circle.fill) "main" {current}
      says "Branch main, current, 2 changes, collapsed"
      click toggle "Show changes"
      copy (doc.on.doc) "Copy branch name" -> "main", then "Branch name copied"
)");
}

TEST(BranchesSection, OpenBranchShowsItsChangesBelow) {
    const auto rows = rowsOf(dirtyRepository(2), gitOnly(), withOpenBranch("main"));
    EXPECT_THAT(titlesOf(rows), ElementsAre("Branches", "main", "src/file1.cpp", "src/file2.cpp"));
    EXPECT_EQ(rows[1].accessibleName, "Branch main, current, 2 changes, expanded");
    EXPECT_EQ(rows[2].depth, 2);
}

TEST(BranchesSection, OnlyTheCurrentBranchHasTheUncommittedChanges) {
    GitRepository repository = dirtyRepository(1);
    repository.branches = {{"fix", false}, {"main", true}};
    const auto rows = rowsOfKind(rowsOf(repository, gitOnly()), Row::Kind::branch);
    EXPECT_EQ(rows[0].isExpanded, std::nullopt);
    EXPECT_EQ(rows[1].isExpanded, false);
}

TEST(BranchesSection, BranchOfAWorktreeShowsTheChangesThereWithItsPathAsBase) {
    const auto rows = rowsOf(withDirtyWorktree(), gitOnly(), withOpenBranch("fix"));
    EXPECT_EQ(rows[1].accessibleName, "Branch fix, checked out in a worktree, 1 change, expanded");
    EXPECT_EQ(rows[2].click->reference, "/work/lake-fix/src/file1.cpp");
}

TEST(BranchesSection, BranchThatIsCurrentAndInAWorktreeShowsTheChangesOfBoth) {
    GitRepository repository = dirtyRepository(1);
    repository.worktrees = {
        {.path = "/work/lake-too", .branch = "main", .changes = modifiedFiles(1)}};
    const auto rows =
        rowsOfKind(rowsOf(repository, gitOnly(), withOpenBranch("main")), Row::Kind::fileChange);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].click->reference, "/work/lake/src/file1.cpp");
    EXPECT_EQ(rows[1].click->reference, "/work/lake-too/src/file1.cpp");
    EXPECT_NE(rows[0].id, rows[1].id);
}

TEST(BranchesSection, RepositoryThatIsItselfALinkedWorktreeShowsItsChangesOnce) {
    GitRepository repository = dirtyRepository(1);
    repository.worktrees = {{.path = "/work/origin", .branch = "trunk", .isMainWorktree = true},
                            {.path = "/work/lake", .branch = "main", .changes = modifiedFiles(1)}};
    const auto rows = rowsOf(repository, gitOnly(), withOpenBranch("main"));
    EXPECT_EQ(rowsOfKind(rows, Row::Kind::fileChange).size(), 1U);
}

TEST(BranchesSection, TwentyChangesAreTwentyRowsAndNoMore) {
    const auto rows = rowsOf(dirtyRepository(20), gitOnly(), withOpenBranch("main"));
    EXPECT_EQ(rowsOfKind(rows, Row::Kind::fileChange).size(), 20U);
    EXPECT_THAT(rowsOfKind(rows, Row::Kind::more), IsEmpty());
}

TEST(BranchesSection, TwentyOneChangesAreTwentyRowsAndARowForTheOneMore) {
    const auto rows = rowsOf(dirtyRepository(21), gitOnly(), withOpenBranch("main"));
    EXPECT_EQ(rowsOfKind(rows, Row::Kind::fileChange).size(), 20U);
    EXPECT_EQ(outline(rows.back()), R"(    more "… and 1 more" secondary
        says "And 1 more changed file"
)");
}

TEST(BranchesSection, LimitHoldsForTheChangesOfSeveralWorkTreesTogether) {
    GitRepository repository = dirtyRepository(15);
    repository.worktrees = {
        {.path = "/work/lake-too", .branch = "main", .changes = modifiedFiles(15)}};
    const auto rows = rowsOf(repository, gitOnly(), withOpenBranch("main"));
    EXPECT_EQ(rowsOfKind(rows, Row::Kind::fileChange).size(), 20U);
    EXPECT_THAT(titlesOf(rowsOfKind(rows, Row::Kind::more)), ElementsAre("… and 10 more"));
}

TEST(BranchesSection, ChangeThatIsBeingDiscardedIsHidden) {
    const GitRepository repository = dirtyRepository(21);
    SectionState state = withOpenBranch("main");
    const auto all = rowsOfKind(rowsOf(repository, gitOnly(), state), Row::Kind::fileChange);
    state.discards[all[3].id] = {.isDiscarding = true, .isOptimisticallyHidden = true};
    const auto rows = rowsOf(repository, gitOnly(), state);
    EXPECT_EQ(rowsOfKind(rows, Row::Kind::fileChange).size(), 19U);
    EXPECT_THAT(titlesOf(rows), ::testing::Not(::testing::Contains(all[3].title)));
    EXPECT_EQ(rows.back().title, "… and 1 more");
}

TEST(BranchesSection, FoundIsAChangeThatTheRepositoryStillHas) {
    const GitRepository repository = withDirtyWorktree();
    const auto rows = rowsOf(repository, gitOnly(), withOpenBranch("fix"));
    const std::string id = rowsOfKind(rows, Row::Kind::fileChange).front().id;
    EXPECT_TRUE(hasFileChange(repository, id));
    EXPECT_FALSE(hasFileChange(calmRepository(), id));
    GitRepository tidied = repository;
    tidied.worktrees = {{.path = "/work/lake-fix", .branch = "fix"}};
    EXPECT_FALSE(hasFileChange(tidied, id));
    EXPECT_FALSE(hasFileChange(repository, rows.front().id));
}

}  // namespace
}  // namespace tarnbeck::testing
