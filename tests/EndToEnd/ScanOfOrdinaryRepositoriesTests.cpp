// What the scan shows of repositories as people have them every day.
#include <filesystem>
#include <utility>

#include "RealScan.h"

namespace tarnbeck {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

using RealScan_Changes = RealScanTest;
using RealScan_Upstream = RealScanTest;
using RealScan_Head = RealScanTest;
using RealScan_References = RealScanTest;
using RealScan_Worktrees = RealScanTest;
using RealScan_Remotes = RealScanTest;

TEST_F(RealScan_Changes, CleanRepositoryIsWholeAndCleanAndLogsNothing) {
    const GitRepository repository = scanned();
    EXPECT_EQ(repository,
              (GitRepository{
                  .path = path_,
                  .name = "project",
                  .currentBranch = "main",
                  .branches = {{"main", true}},
                  .worktrees = {{.path = path_,
                                 .branch = "main",
                                 .commitHash = inGit({"rev-parse", "HEAD"}).substr(0, 40),
                                 .isMainWorktree = true}},
                  .syncStatus = GitSyncStatus::NoUpstream{},
              }));
    EXPECT_TRUE(repository.isClean());
    EXPECT_THAT(real_.lines(), IsEmpty());
}

TEST_F(RealScan_Changes, StagedUnstagedAndUntrackedAreToldApart) {
    commitFile(path_, "both.txt", "one\n");
    commitFile(path_, "gone.txt", "one\n");
    commitFile(path_, "staged gone.txt", "one\n");
    write("file.txt", "changed in the work tree\n");
    write("both.txt", "two\n");
    inGit({"add", "both.txt"});
    write("both.txt", "three\n");
    write("added.txt", "new\n");
    inGit({"add", "added.txt"});
    inGit({"rm", "-q", "staged gone.txt"});
    std::filesystem::remove(path_ + "/gone.txt");
    write("folder/untracked.txt", "new\n");
    EXPECT_THAT(scanned().uncommittedChanges,
                UnorderedElementsAre(
                    FileChange{"M", "file.txt"}, FileChange{"MM", "both.txt"},
                    FileChange{"A", "added.txt"}, FileChange{"D", "\"staged gone.txt\""},
                    FileChange{"D", "gone.txt"}, FileChange{"??", "folder/untracked.txt"}));
}

TEST_F(RealScan_Changes, FirstLineKeepsItsLetterWhereOnlyTheWorkTreeChanged) {
    write("file.txt", "changed\n");
    EXPECT_THAT(scanned().uncommittedChanges, ElementsAre(FileChange{"M", "file.txt"}));
}

TEST_F(RealScan_Changes, RenameKeepsBothNamesWithGitsArrow) {
    inGit({"mv", "file.txt", "renamed.txt"});
    EXPECT_THAT(scanned().uncommittedChanges,
                ElementsAre(FileChange{"R", "file.txt -> renamed.txt"}));
}

TEST_F(RealScan_Changes, ConflictHasBothLetters) {
    inGit({"checkout", "-q", "-b", "other"});
    commitFile(path_, "file.txt", "theirs\n");
    inGit({"checkout", "-q", "main"});
    commitFile(path_, "file.txt", "ours\n");
    inGit({"merge", "-q", "other"}, true);
    EXPECT_THAT(scanned().uncommittedChanges, ElementsAre(FileChange{"UU", "file.txt"}));
}

TEST_F(RealScan_Changes, NamesThatGitQuotesStayQuoted) {
    write("with blank.txt", "");
    write("d\xC3\xA4nisch.txt", "");
    write("line\nfeed.txt", "");
    write("quote\".txt", "");
    write("not utf-8 \xFF.txt", "");
    EXPECT_THAT(scanned().uncommittedChanges,
                UnorderedElementsAre(FileChange{"??", "\"with blank.txt\""},
                                     FileChange{"??", "\"d\\303\\244nisch.txt\""},
                                     FileChange{"??", "\"line\\nfeed.txt\""},
                                     FileChange{"??", "\"quote\\\".txt\""},
                                     FileChange{"??", "\"not utf-8 \\377.txt\""}));
}

TEST_F(RealScan_Changes, IgnoredFilesAreNotShown) {
    commitFile(path_, ".gitignore", "*.log\n");
    write("noise.log", "");
    EXPECT_THAT(scanned().uncommittedChanges, IsEmpty());
}

TEST_F(RealScan_Changes, StashesComeNewestFirstWithTheirSubjects) {
    write("file.txt", "first\n");
    inGit({"stash", "push", "-q", "-m", "first"});
    write("file.txt", "second\n");
    inGit({"stash", "push", "-q", "-m", "second"});
    const GitRepository repository = scanned();
    EXPECT_THAT(repository.stashes, ElementsAre(GitStash{"stash@{0}", "On main: second"},
                                                GitStash{"stash@{1}", "On main: first"}));
    EXPECT_EQ(repository.stashCount, 2);
    EXPECT_FALSE(repository.isClean());
}

TEST_F(RealScan_Upstream, SameAsLocalIsUpToDate) {
    makeOrigin();
    EXPECT_EQ(scanned().syncStatus, GitSyncStatus(GitSyncStatus::UpToDate{"origin/main"}));
}

TEST_F(RealScan_Upstream, CommitsOfOurOwnAreAhead) {
    makeOrigin();
    commitFile(path_, "file.txt", "one\n");
    commitFile(path_, "file.txt", "two\n");
    EXPECT_EQ(scanned().syncStatus, GitSyncStatus(GitSyncStatus::Ahead{"origin/main", 2}));
}

TEST_F(RealScan_Upstream, CommitsOfOthersAreBehind) {
    makeOrigin();
    commitFile(path_, "file.txt", "one\n");
    inGit({"push", "-q"});
    inGit({"reset", "-q", "--hard", "HEAD~1"});
    EXPECT_EQ(scanned().syncStatus, GitSyncStatus(GitSyncStatus::Behind{"origin/main", 1}));
}

TEST_F(RealScan_Upstream, CommitsOfBothAreDiverged) {
    makeOrigin();
    commitFile(path_, "file.txt", "theirs\n");
    inGit({"push", "-q"});
    inGit({"reset", "-q", "--hard", "HEAD~1"});
    commitFile(path_, "file.txt", "ours 1\n");
    commitFile(path_, "file.txt", "ours 2\n");
    EXPECT_EQ(scanned().syncStatus, GitSyncStatus(GitSyncStatus::Diverged{"origin/main", 2, 1}));
}

TEST_F(RealScan_Upstream, OneThatHasGoneCountsAsUpToDate) {
    makeOrigin();
    inGit({"update-ref", "-d", "refs/remotes/origin/main"});
    EXPECT_EQ(scanned().syncStatus, GitSyncStatus(GitSyncStatus::UpToDate{"origin/main"}));
}

TEST_F(RealScan_Upstream, BranchWithoutOneHasNone) {
    makeOrigin();
    inGit({"checkout", "-q", "-b", "local"});
    EXPECT_EQ(scanned().syncStatus, GitSyncStatus(GitSyncStatus::NoUpstream{}));
}

TEST_F(RealScan_Head, DetachedShowsTheShortHashAndKeepsGitsOwnLine) {
    const std::string hash = inGit({"rev-parse", "--short", "HEAD"}).substr(0, 7);
    inGit({"checkout", "-q", "--detach"});
    const GitRepository repository = scanned();
    EXPECT_TRUE(repository.isDetachedHead);
    EXPECT_EQ(repository.currentBranch, hash);
    EXPECT_THAT(repository.branches, ElementsAre(GitBranch{"(HEAD detached at " + hash + ")", true},
                                                 GitBranch{"main", false}));
}

TEST_F(RealScan_Head, InTheMiddleOfARebaseIsDetachedWithTheConflict) {
    inGit({"checkout", "-q", "-b", "topic"});
    commitFile(path_, "file.txt", "topic\n");
    inGit({"checkout", "-q", "main"});
    commitFile(path_, "file.txt", "main\n");
    inGit({"rebase", "-q", "main", "topic"}, true);
    const GitRepository repository = scanned();
    EXPECT_TRUE(repository.isDetachedHead);
    EXPECT_THAT(repository.uncommittedChanges, ElementsAre(FileChange{"UU", "file.txt"}));
    EXPECT_THAT(repository.branches,
                ElementsAre(GitBranch{"(no branch, rebasing topic)", true},
                            GitBranch{"main", false}, GitBranch{"topic", false}));
}

TEST_F(RealScan_References, BranchesComeInGitsOrderWithTheCurrentOneMarked) {
    for (const char* name : {"zebra", "feature/a", "alpha"}) inGit({"branch", name});
    inGit({"checkout", "-q", "feature/a"});
    EXPECT_THAT(scanned().branches,
                ElementsAre(GitBranch{"alpha", false}, GitBranch{"feature/a", true},
                            GitBranch{"main", false}, GitBranch{"zebra", false}));
}

TEST_F(RealScan_References, ManyBranchesAreAllThere) {
    const std::string hash = inGit({"rev-parse", "HEAD"}).substr(0, 40);
    std::string packed = "# pack-refs with: peeled fully-peeled sorted \n";
    for (int number = 1000; number < 6000; ++number) {
        packed += hash + " refs/heads/branch-" + std::to_string(number) + "\n";
    }
    write(".git/packed-refs", packed);
    const GitRepository repository = scanned();
    EXPECT_EQ(repository.branches.size(), 5001U);
    EXPECT_EQ(repository.branches[4999], (GitBranch{"branch-5999", false}));
}

TEST_F(RealScan_References, PackedOnesCountLikeLooseOnes) {
    inGit({"branch", "packed"});
    inGit({"tag", "v1"});
    inGit({"pack-refs", "--all"});
    const GitRepository repository = scanned();
    EXPECT_THAT(repository.branches,
                ElementsAre(GitBranch{"main", true}, GitBranch{"packed", false}));
    EXPECT_THAT(repository.tags, ElementsAre("v1"));
}

TEST_F(RealScan_References, BranchThatATagSharesItsNameWithIsToldApart) {
    inGit({"branch", "v1"});
    inGit({"tag", "v1"});
    EXPECT_THAT(scanned().branches,
                ElementsAre(GitBranch{"main", true}, GitBranch{"heads/v1", false}));
}

TEST_F(RealScan_References, TagsComeNewestFirst) {
    const std::vector<std::pair<std::string, std::string>> tags = {
        {"b-oldest", "1000000000"}, {"c-newest", "1000000300"}, {"a-middle", "1000000200"}};
    for (const auto& [name, seconds] : tags) {
        const std::string object = "object " + inGit({"rev-parse", "HEAD"}) + "type commit\ntag " +
                                   name + "\ntagger A U Thor <author@example.com> " + seconds +
                                   " +0000\n\ntag\n";
        write(".git/tag-object", object);
        const std::string hash =
            inGit({"hash-object", "-t", "tag", "-w", ".git/tag-object"}).substr(0, 40);
        inGit({"update-ref", "refs/tags/" + name, hash});
    }
    EXPECT_THAT(scanned().tags, ElementsAre("c-newest", "a-middle", "b-oldest"));
}

TEST_F(RealScan_Worktrees, LinkedOnesComeAfterTheMainOneWithTheirChanges) {
    const std::string linked = real_.folder / "linked one";
    inGit({"worktree", "add", "-q", "-b", "side", linked});
    real_.folder.write("linked one/new.txt", "");
    const GitRepository repository = scanned();
    ASSERT_EQ(repository.worktrees.size(), 2U);
    EXPECT_TRUE(repository.worktrees[0].isMainWorktree);
    EXPECT_EQ(repository.worktrees[1].path, linked);
    EXPECT_EQ(repository.worktrees[1].branch, "side");
    EXPECT_FALSE(repository.worktrees[1].isMainWorktree);
    EXPECT_THAT(repository.worktrees[1].changes, ElementsAre(FileChange{"??", "new.txt"}));
    EXPECT_THAT(repository.uncommittedChanges, IsEmpty());
    EXPECT_FALSE(repository.isClean());
}

TEST_F(RealScan_Worktrees, DetachedOneHasNoBranch) {
    inGit({"worktree", "add", "-q", "--detach", real_.folder / "linked"});
    const GitRepository repository = scanned();
    ASSERT_EQ(repository.worktrees.size(), 2U);
    EXPECT_TRUE(repository.worktrees[1].isDetached);
    EXPECT_EQ(repository.worktrees[1].branch, std::nullopt);
}

TEST_F(RealScan_Worktrees, OneWhoseFolderHasGoneHasNoChangesAndTheScanGoesOn) {
    const std::string linked = real_.folder / "linked";
    inGit({"worktree", "add", "-q", "-b", "side", linked});
    std::filesystem::remove_all(linked);
    const GitRepository repository = scanned();
    ASSERT_EQ(repository.worktrees.size(), 2U);
    EXPECT_THAT(repository.worktrees[1].changes, IsEmpty());
    EXPECT_THAT(real_.lines(), ElementsAre(::testing::StartsWith(
                                   "FAIL(128) git status --porcelain -uall at " + linked + " — ")));
}

TEST_F(RealScan_Worktrees, LinkedOneIsItselfARepositoryThroughItsGitFile) {
    const std::string linked = real_.folder / "linked";
    inGit({"worktree", "add", "-q", "-b", "side", linked});
    real_.folder.write("linked/new.txt", "");
    const GitRepository repository = scanned(linked);
    EXPECT_EQ(repository.path, linked);
    EXPECT_EQ(repository.currentBranch, "side");
    EXPECT_THAT(repository.uncommittedChanges, ElementsAre(FileChange{"??", "new.txt"}));
    EXPECT_EQ(repository.gitConfigurationIssue, std::nullopt);
}

TEST_F(RealScan_Remotes, GitHubOnesAreKnownByOwnerAndName) {
    inGit({"remote", "add", "origin", "https://github.com/Owner/Repo.git"});
    inGit({"remote", "add", "fork", "git@github.com:Fork/Repo.git"});
    inGit({"remote", "add", "elsewhere", "https://example.com/o/r.git"});
    EXPECT_THAT(scanned().gitHubOwnerRepos, ElementsAre("fork/repo", "owner/repo"));
}

TEST_F(RealScan_Remotes, BranchesBearTheirRemoteAsPrefix) {
    makeOrigin();
    inGit({"push", "-q", "origin", "main:feature/x"});
    inGit({"remote", "set-head", "origin", "main"});
    EXPECT_THAT(scanned().remoteBranches, ElementsAre("origin/feature/x", "origin/main"));
}

}  // namespace
}  // namespace tarnbeck
