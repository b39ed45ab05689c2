// Whole sections, to the last word.
#include "SectionFixture.h"
#include "SectionOutline.h"

namespace tarnbeck::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

std::string sectionOutline(const GitRepository& repository, const SectionFlags& flags = gitOnly(),
                           const SectionState& state = allOpen()) {
    return outline(sectionContent({repository, state, flags}));
}

SectionState withOpenMain() {
    SectionState state = allOpen();
    state.branchChangesExpanded["main"] = true;
    return state;
}

TEST(SectionOutline, Clean) {
    EXPECT_EQ(sectionOutline(calmRepository(), flagsOf(DomainMode::git), {}),
              R"(header [v] (checkmark.circle.fill green) "lake"
    says "lake, Git Clean, expanded"
    refresh (arrow.clockwise) "Refresh git data for this repository"
    badge Git Clean green
subsection [v] (arrow.triangle.branch) "Branches" 1
    says "Branches, 1, expanded"
    click toggle "Hide Branches"
    refreshGit (arrow.clockwise) "Refresh git data for this repository"
  branch (circle.fill) "main" {current}
      says "Branch main, current"
      copy (doc.on.doc) "Copy branch name" -> "main", then "Branch name copied"
subsection [>] (exclamationmark.bubble) "Issues" 0
    says "Issues, 0, collapsed"
    click toggle "Show Issues"
    refreshIssues (arrow.clockwise) "Reload issues and pull requests"
subsection [>] (arrow.triangle.merge) "Pull Requests" 0
    says "Pull Requests, 0, collapsed"
    click toggle "Show Pull Requests"
    refreshIssues (arrow.clockwise) "Reload issues and pull requests"
)");
}

TEST(SectionOutline, Dirty) {
    GitRepository repository = calmRepository();
    repository.uncommittedChanges = {
        {"M", "src/a.cpp"}, {"??", "notes.txt"}, {"R", "old.cpp -> new.cpp"}};
    EXPECT_EQ(sectionOutline(repository, gitOnly(), withOpenMain()),
              R"(header [v] (pencil.circle.fill red) "lake" 3 changes
    says "lake, Git Dirty, 3 changes, expanded"
    refresh (arrow.clockwise) "Refresh git data for this repository"
    badge Git Dirty red
subsection [v] (arrow.triangle.branch) "Branches" 1
    says "Branches, 1, expanded"
    click toggle "Hide Branches"
    refreshGit (arrow.clockwise) "Refresh git data for this repository"
  branch [v] (circle.fill) "main" {current}
      says "Branch main, current, 3 changes, expanded"
      click toggle "Hide changes"
      copy (doc.on.doc) "Copy branch name" -> "main", then "Branch name copied"
    fileChange <M blue> "src/a.cpp" monospaced elidedInMiddle
        says "Changed file src/a.cpp, modified"
        click openFile "Open file" -> "/work/lake/src/a.cpp"
        copy (doc.on.doc) "Copy file path" -> "src/a.cpp", then "File path copied"
        discard (arrow.uturn.backward.circle orange) "Discard changes in this file"
    fileChange <?? gray> "notes.txt" monospaced elidedInMiddle
        says "Changed file notes.txt, untracked"
        click openFile "Open file" -> "/work/lake/notes.txt"
        copy (doc.on.doc) "Copy file path" -> "notes.txt", then "File path copied"
        discard (arrow.uturn.backward.circle orange) "Discard changes in this file"
    fileChange <R> "old.cpp -> new.cpp" monospaced elidedInMiddle
        says "Changed file old.cpp -> new.cpp, renamed"
        click openFile "Open file" -> "/work/lake/new.cpp"
        copy (doc.on.doc) "Copy file path" -> "new.cpp", then "File path copied"
)");
}

TEST(SectionOutline, Detached) {
    GitRepository repository = calmRepository();
    repository.isDetachedHead = true;
    repository.currentBranch = "1a2b3c4";
    repository.branches = {{"(HEAD detached at 1a2b3c4)", true}};
    repository.syncStatus = GitSyncStatus::Unknown{};
    EXPECT_EQ(sectionOutline(repository),
              R"~(header [v] (exclamationmark.octagon.fill red) "lake" 1 branch · detached HEAD
    says "lake, Git Detached, 1 branch, detached HEAD, expanded"
    refresh (arrow.clockwise) "Refresh git data for this repository"
    badge Git Detached red
alert (exclamationmark.triangle red) "Detached HEAD at 1a2b3c4"
    says "Warning: Detached HEAD at 1a2b3c4"
subsection [v] (arrow.triangle.branch) "Branches" 1
    says "Branches, 1, expanded"
    click toggle "Hide Branches"
    refreshGit (arrow.clockwise) "Refresh git data for this repository"
  branch (circle.fill) "(HEAD detached at 1a2b3c4)" {current}
      says "Branch (HEAD detached at 1a2b3c4), current"
      copy (doc.on.doc) "Copy branch name" -> "(HEAD detached at 1a2b3c4)", then "Branch name copied"
)~");
}

TEST(SectionOutline, Behind) {
    GitRepository repository = calmRepository();
    repository.syncStatus = GitSyncStatus::Behind{"origin/main", 3};
    EXPECT_EQ(sectionOutline(repository, flagsOf(DomainMode::dependencies)),
              R"(header [v] (arrow.down.circle.fill yellow) "lake"
    says "lake, Sync Behind 3, Dependencies not applicable, expanded"
    sync (arrow.triangle.2.circlepath) "Fetch remote changes and fast-forward this repository"
    refresh (arrow.clockwise) "Refresh dependencies for this repository"
    badge Sync Behind 3 yellow
    badge Deps n/a
)");
}

TEST(SectionOutline, Diverged) {
    GitRepository repository = calmRepository();
    repository.syncStatus = GitSyncStatus::Diverged{"origin/main", 2, 3};
    SectionFlags flags = flagsOf(DomainMode::combined);
    flags.isExpanded = false;
    flags.issueReloadInProgress = true;
    EXPECT_EQ(sectionOutline(repository, flags),
              R"(header [>] (arrow.left.arrow.right.circle.fill yellow) "lake"
    says "lake, Git Clean, Sync Diverged, 2 ahead, 3 behind, Dependencies not applicable, collapsed"
    refresh (arrow.clockwise) "Refresh git, issues, and dependencies for this repository" in progress
    badge Git Clean green
    badge Sync Diverged 2↑ 3↓ yellow
    badge Deps n/a
)");
}

TEST(SectionOutline, ConfigurationIssue) {
    GitRepository repository = calmRepository();
    repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    SectionState state;
    state.showBranches = false;
    EXPECT_EQ(sectionOutline(repository, gitOnly(), state),
              R"(header [v] (exclamationmark.triangle.fill orange) "lake" git config issue
    says "lake, Git Config, git config issue, expanded"
    refresh (arrow.clockwise) "Refresh git data for this repository"
    badge Git Config orange
alert (exclamationmark.octagon orange) "Git config issue: core.bare=true despite an existing worktree"
    says "Warning: Git config issue: core.bare=true despite an existing worktree"
subsection [>] (arrow.triangle.branch) "Branches" 1
    says "Branches, 1, collapsed"
    click toggle "Show Branches"
    refreshGit (arrow.clockwise) "Refresh git data for this repository"
)");
}

TEST(SectionOutline, WorktreesWithChanges) {
    GitRepository repository = calmRepository();
    repository.branches = {{"fix", false}, {"main", true}};
    repository.worktrees = {
        {.path = "/work/lake", .branch = "main", .isMainWorktree = true},
        {.path = "/work/lake-fix", .branch = "fix", .changes = {{"D", "gone.txt"}}}};
    SectionState state = allOpen();
    state.branchChangesExpanded["fix"] = true;
    EXPECT_EQ(sectionOutline(repository, gitOnly(), state),
              R"(header [v] (exclamationmark.triangle.fill orange) "lake" 1 branch · 1 worktree
    says "lake, Git Attention, 1 branch, 1 worktree, expanded"
    refresh (arrow.clockwise) "Refresh git data for this repository"
    badge Git Attention orange
subsection [v] (arrow.triangle.branch) "Branches" 2
    says "Branches, 2, expanded"
    click toggle "Hide Branches"
    refreshGit (arrow.clockwise) "Refresh git data for this repository"
  branch [v] (circle) "fix" {worktree}
      says "Branch fix, checked out in a worktree, 1 change, expanded"
      click toggle "Hide changes"
      copy (doc.on.doc) "Copy branch name" -> "fix", then "Branch name copied"
    fileChange <D red> "gone.txt" monospaced elidedInMiddle
        says "Changed file gone.txt, deleted"
        click openFile "Open file" -> "/work/lake-fix/gone.txt"
        copy (doc.on.doc) "Copy file path" -> "gone.txt", then "File path copied"
        discard (arrow.uturn.backward.circle orange) "Discard changes in this file"
  branch (circle.fill) "main" {current}
      says "Branch main, current"
      copy (doc.on.doc) "Copy branch name" -> "main", then "Branch name copied"
subsection [v] (folder.badge.gearshape) "Worktrees" 1
    says "Worktrees, 1, expanded"
    click toggle "Hide Worktrees"
  worktree (folder.fill) "fix"
      says "Worktree fix, at /work/lake-fix"
      copy (doc.on.doc) "Copy worktree label" -> "fix", then "Worktree label copied"
)");
}

TEST(SectionOutline, TwentyOneChanges) {
    GitRepository repository = calmRepository();
    repository.uncommittedChanges = modifiedFiles(21);
    std::string files;
    for (int number = 1; number <= 20; ++number) {
        files += fmt::format(
            R"(    fileChange <M blue> "src/file{0}.cpp" monospaced elidedInMiddle
        says "Changed file src/file{0}.cpp, modified"
        click openFile "Open file" -> "/work/lake/src/file{0}.cpp"
        copy (doc.on.doc) "Copy file path" -> "src/file{0}.cpp", then "File path copied"
        discard (arrow.uturn.backward.circle orange) "Discard changes in this file"
)",
            number);
    }
    EXPECT_THAT(sectionOutline(repository, gitOnly(), withOpenMain()),
                EndsWith(R"(  branch [v] (circle.fill) "main" {current}
      says "Branch main, current, 21 changes, expanded"
      click toggle "Hide changes"
      copy (doc.on.doc) "Copy branch name" -> "main", then "Branch name copied"
)" + files + R"(    more "… and 1 more" secondary
        says "And 1 more changed file"
)"));
}

TEST(SectionOutline, TwentySixIssues) {
    GitRepository repository = calmRepository();
    repository.issues = numbered(26, numberedIssue);
    std::string issues;
    for (int number = 1; number <= 25; ++number) {
        issues += fmt::format(R"(  issue (circle green) #{0} "Issue {0}"
      says "Issue {0}, Issue {0}, open"
      click openUrl "Open issue #{0}" -> "https://example.org/issues/{0}"
      copy (doc.on.doc) "Copy issue title" -> "Issue {0}", then "Issue title copied"
)",
                              number);
    }
    EXPECT_EQ(sectionOutline(repository, flagsOf(DomainMode::issues)),
              R"(header [v] (checkmark.circle.fill green) "lake" 26 issues
    says "lake, clean, 26 issues, expanded"
    refresh (arrow.clockwise) "Reload issues and pull requests"
subsection [v] (exclamationmark.bubble) "Issues" 26
    says "Issues, 26, expanded"
    click toggle "Hide Issues"
    refreshIssues (arrow.clockwise) "Reload issues and pull requests"
)" + issues + R"(  more "... and 1 more on GitHub" secondary
      says "And 1 more issue on GitHub"
subsection [v] (arrow.triangle.merge) "Pull Requests" 0
    says "Pull Requests, 0, expanded"
    click toggle "Hide Pull Requests"
    refreshIssues (arrow.clockwise) "Reload issues and pull requests"
  state (checkmark.circle) "No open pull requests" secondary
      says "No open pull requests"
)");
}

TEST(SectionOutline, NameOfThreeHundredCharactersIsKeptWhole) {
    const std::string name(300, 'n');
    GitRepository repository = calmRepository();
    repository.name = name;
    repository.branches = {{name, true}};
    EXPECT_EQ(sectionOutline(repository),
              fmt::format(R"(header [v] (exclamationmark.triangle.fill orange) "{0}" 1 branch
    says "{0}, Git Attention, 1 branch, expanded"
    refresh (arrow.clockwise) "Refresh git data for this repository"
    badge Git Attention orange
subsection [v] (arrow.triangle.branch) "Branches" 1
    says "Branches, 1, expanded"
    click toggle "Hide Branches"
    refreshGit (arrow.clockwise) "Refresh git data for this repository"
  branch (circle.fill) "{0}" {{current}}
      says "Branch {0}, current"
      copy (doc.on.doc) "Copy branch name" -> "{0}", then "Branch name copied"
)",
                          name));
}

TEST(SectionOutline, MarkupAndControlCharacters) {
    GitRepository repository = calmRepository();
    repository.name = "<b>lake</b>";
    GitHubIssue issue = numberedIssue(7);
    issue.title = "<img src=x> \x1b[31m & \u202E";
    issue.labels = {"a\nb"};
    repository.issues = {issue};
    EXPECT_THAT(sectionOutline(repository, flagsOf(DomainMode::issues)),
                HasSubstr("  issue (circle green) #7 \"<img src=x> \uFFFD[31m & \uFFFD\" "
                          "{a\uFFFDb}\n"
                          "      says \"Issue 7, <img src=x> \uFFFD[31m & \uFFFD, open, "
                          "label a\uFFFDb\"\n"
                          "      click openUrl \"Open issue #7\" -> "
                          "\"https://example.org/issues/7\"\n"
                          "      copy (doc.on.doc) \"Copy issue title\" -> "
                          "\"<img src=x> \x1b[31m & \u202E\", then \"Issue title copied\"\n"));
    EXPECT_THAT(sectionOutline(repository, gitOnly()),
                ::testing::StartsWith("header [v] (checkmark.circle.fill green) \"<b>lake</b>\" "
                                      "1 issue\n"));
}

TEST(SectionOutline, FileNameThatIsNotUtf8) {
    GitRepository repository = calmRepository();
    repository.uncommittedChanges = {{"M", R"("caf\351.txt")"}};
    EXPECT_THAT(sectionOutline(repository, gitOnly(), withOpenMain()),
                EndsWith("    fileChange <M blue> \"caf\uFFFD.txt\" monospaced elidedInMiddle\n"
                         "        says \"Changed file caf\uFFFD.txt, modified\"\n"
                         "        click openFile \"Open file\" -> \"/work/lake/caf\xE9.txt\"\n"
                         "        copy (doc.on.doc) \"Copy file path\" -> \"caf\xE9.txt\", then "
                         "\"File path copied\"\n"
                         "        discard (arrow.uturn.backward.circle orange) \"Discard changes "
                         "in this file\"\n"));
}

TEST(SectionOutline, TenThousandChangesAreTwentyRows) {
    GitRepository repository = calmRepository();
    repository.uncommittedChanges = modifiedFiles(10'000);
    const auto rows = rowsOf(repository, gitOnly(), withOpenMain());
    EXPECT_EQ(rows.size(), 1U + 1U + 20U + 1U);
    EXPECT_EQ(rows.back().title, "… and 9980 more");
}

}  // namespace
}  // namespace tarnbeck::testing
