#include <filesystem>

#include "DiscardFixture.h"

namespace tarnbeck::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
namespace fs = std::filesystem;

using Discard_Untracked = DiscardTest;
using Discard_Tracked = DiscardTest;
using Discard_Elsewhere = DiscardTest;
using Discard_Command = DiscardTest;

TEST_F(Discard_Untracked, FileIsDeletedAndItsNeighboursStay) {
    write("folder/new.txt", "new");
    write("folder/other.txt", "other");
    EXPECT_EQ(discardRow("folder/new.txt", "??"), std::nullopt);
    EXPECT_FALSE(fs::exists(in("folder/new.txt")));
    EXPECT_EQ(contentOf(in("folder/other.txt")), "other");
}

TEST_F(Discard_Untracked, FolderEntryIsRemovedWithItsContents) {
    write("folder/a.txt", "a");
    write("folder/deep/b.txt", "b");
    write("folder2/c.txt", "c");
    EXPECT_EQ(discard("folder/", "??"), std::nullopt);
    EXPECT_FALSE(fs::exists(in("folder")));
    EXPECT_EQ(contentOf(in("folder2/c.txt")), "c");
}

TEST_F(Discard_Untracked, LinkToAFolderGoesAndTheFolderStays) {
    folder.write("outside/precious.txt", "precious");
    fs::create_directory_symlink(folder / "outside", in("link"));
    EXPECT_EQ(discardRow("link", "??"), std::nullopt);
    EXPECT_FALSE(fs::is_symlink(in("link")));
    EXPECT_EQ(contentOf(folder / "outside/precious.txt"), "precious");
}

TEST_F(Discard_Untracked, DanglingLinkGoes) {
    fs::create_symlink("nowhere", in("link"));
    EXPECT_EQ(discardRow("link", "??"), std::nullopt);
    EXPECT_FALSE(fs::is_symlink(in("link")));
}

TEST_F(Discard_Untracked, LeadingDashIsAName) {
    write("-rf", "new");
    EXPECT_EQ(discardRow("-rf", "??"), std::nullopt);
    EXPECT_FALSE(fs::exists(in("-rf")));
}

TEST_F(Discard_Tracked, ChangeInTheWorkTreeGoes) {
    write("file.txt", "changed\n");
    EXPECT_EQ(discardRow("file.txt", "M"), std::nullopt);
    EXPECT_EQ(contentOf(in("file.txt")), "content\n");
    EXPECT_THAT(changesIn(repository), IsEmpty());
}

TEST_F(Discard_Tracked, StagedChangeGoes) {
    write("file.txt", "changed\n");
    gitHere({"add", "file.txt"});
    EXPECT_EQ(discardRow("file.txt", "M"), std::nullopt);
    EXPECT_EQ(contentOf(in("file.txt")), "content\n");
    EXPECT_THAT(changesIn(repository), IsEmpty());
}

TEST_F(Discard_Tracked, StagedAndUnstagedChangesGoTogether) {
    write("file.txt", "staged\n");
    gitHere({"add", "file.txt"});
    write("file.txt", "and changed again\n");
    EXPECT_EQ(discardRow("file.txt", "MM"), std::nullopt);
    EXPECT_EQ(contentOf(in("file.txt")), "content\n");
    EXPECT_THAT(changesIn(repository), IsEmpty());
}

TEST_F(Discard_Tracked, StagedChangeThatWasTakenBackInTheWorkTreeGoesFromTheIndex) {
    write("file.txt", "staged\n");
    gitHere({"add", "file.txt"});
    write("file.txt", "content\n");
    EXPECT_EQ(discardRow("file.txt", "MM"), std::nullopt);
    EXPECT_THAT(changesIn(repository), IsEmpty());
}

TEST_F(Discard_Tracked, AddedFileGoes) {
    write("added.txt", "added");
    gitHere({"add", "added.txt"});
    EXPECT_EQ(discardRow("added.txt", "A"), std::nullopt);
    EXPECT_FALSE(fs::exists(in("added.txt")));
    EXPECT_THAT(changesIn(repository), IsEmpty());
}

TEST_F(Discard_Tracked, AddedFileThatWasChangedAgainGoes) {
    write("added.txt", "added");
    gitHere({"add", "added.txt"});
    write("added.txt", "and changed");
    EXPECT_EQ(discardRow("added.txt", "AM"), std::nullopt);
    EXPECT_FALSE(fs::exists(in("added.txt")));
    EXPECT_THAT(changesIn(repository), IsEmpty());
}

TEST_F(Discard_Tracked, AddedFileThatWasDeletedGoesFromTheIndex) {
    write("added.txt", "added");
    gitHere({"add", "added.txt"});
    fs::remove(in("added.txt"));
    EXPECT_EQ(discardRow("added.txt", "AD"), std::nullopt);
    EXPECT_THAT(changesIn(repository), IsEmpty());
}

TEST_F(Discard_Tracked, FileThatIsOnlyMeantToBeAddedGoes) {
    write("added.txt", "added");
    gitHere({"add", "-N", "added.txt"});
    EXPECT_EQ(discardRow("added.txt", "A"), std::nullopt);
    EXPECT_FALSE(fs::exists(in("added.txt")));
}

TEST_F(Discard_Tracked, DeletedFileComesBack) {
    fs::remove(in("file.txt"));
    EXPECT_EQ(discardRow("file.txt", "D"), std::nullopt);
    EXPECT_EQ(contentOf(in("file.txt")), "content\n");
}

TEST_F(Discard_Tracked, FileWhoseDeletionIsStagedComesBack) {
    gitHere({"rm", "-q", "file.txt"});
    EXPECT_EQ(discardRow("file.txt", "D"), std::nullopt);
    EXPECT_EQ(contentOf(in("file.txt")), "content\n");
    EXPECT_THAT(changesIn(repository), IsEmpty());
}

TEST_F(Discard_Tracked, DeletedFolderComesBackByOneFileOnly) {
    commit("folder/a.txt", "a");
    commit("folder/b.txt", "b");
    fs::remove_all(in("folder"));
    EXPECT_EQ(discardRow("folder/a.txt", "D"), std::nullopt);
    EXPECT_EQ(contentOf(in("folder/a.txt")), "a");
    EXPECT_FALSE(fs::exists(in("folder/b.txt")));
}

TEST_F(Discard_Tracked, ChangeOfTheModeGoes) {
    fs::permissions(in("file.txt"), fs::perms::owner_exec, fs::perm_options::add);
    EXPECT_EQ(discardRow("file.txt", "M"), std::nullopt);
    EXPECT_EQ(fs::status(in("file.txt")).permissions() & fs::perms::owner_exec, fs::perms::none);
}

TEST_F(Discard_Tracked, FileThatBecameALinkComesBackAndTheTargetStays) {
    folder.write("outside.txt", "precious");
    fs::remove(in("file.txt"));
    fs::create_symlink(folder / "outside.txt", in("file.txt"));
    EXPECT_EQ(discardRow("file.txt", "T"), std::nullopt);
    EXPECT_EQ(contentOf(in("file.txt")), "content\n");
    EXPECT_FALSE(fs::is_symlink(in("file.txt")));
    EXPECT_EQ(contentOf(folder / "outside.txt"), "precious");
}

TEST_F(Discard_Tracked, OtherFilesKeepTheirStagedAndUnstagedChanges) {
    commit("other.txt", "other");
    write("other.txt", "staged");
    gitHere({"add", "other.txt"});
    write("other.txt", "and changed");
    write("file.txt", "changed");
    EXPECT_EQ(discardRow("file.txt", "M"), std::nullopt);
    EXPECT_THAT(changesIn(repository),
                ElementsAre(FileChange{.status = "MM", .filePath = "other.txt"}));
    EXPECT_EQ(contentOf(in("other.txt")), "and changed");
}

TEST_F(Discard_Elsewhere, LinkedWorktreeIsServedByItsOwnPath) {
    gitHere({"worktree", "add", "-q", "-b", "side", folder / "linked"});
    folder.write("linked/file.txt", "changed there\n");
    folder.write("linked/new.txt", "new there\n");
    write("file.txt", "changed here\n");
    write("new.txt", "new here\n");
    EXPECT_EQ(discardIn({.repoPath = folder / "linked", .filePath = "file.txt", .status = "M"}),
              std::nullopt);
    EXPECT_EQ(discardIn({.repoPath = folder / "linked", .filePath = "new.txt", .status = "??"}),
              std::nullopt);
    EXPECT_EQ(contentOf(folder / "linked/file.txt"), "content\n");
    EXPECT_FALSE(fs::exists(folder / "linked/new.txt"));
    EXPECT_EQ(contentOf(in("file.txt")), "changed here\n");
    EXPECT_EQ(contentOf(in("new.txt")), "new here\n");
}

TEST_F(Discard_Elsewhere, LinkedWorktreeInsideTheMainOneIsServedByItsOwnPath) {
    gitHere({"worktree", "add", "-q", "-b", "side", in("trees/side")});
    write("trees/side/file.txt", "changed there\n");
    write("file.txt", "changed here\n");
    EXPECT_EQ(discardIn({.repoPath = in("trees/side"), .filePath = "file.txt", .status = "M"}),
              std::nullopt);
    EXPECT_EQ(contentOf(in("trees/side/file.txt")), "content\n");
    EXPECT_EQ(contentOf(in("file.txt")), "changed here\n");
}

TEST_F(Discard_Elsewhere, LinkedWorktreeIsNotDeletedAsAnUntrackedFolder) {
    gitHere({"worktree", "add", "-q", "-b", "side", in("trees/side")});
    const Tree before = treeAt(repository);
    EXPECT_EQ(discardRow("trees/side/", "??"),
              "git deleted nothing, because trees/side/ is a repository of its own");
    EXPECT_EQ(treeAt(repository), before);
}

TEST_F(Discard_Elsewhere, FolderInsideTheWorkTreeIsNoPlaceToStartFrom) {
    commit("sub/file.txt", "below\n");
    write("file.txt", "changed\n");
    write("sub/file.txt", "changed below\n");
    const Tree before = treeAt(repository);
    EXPECT_THAT(discardIn({.repoPath = in("sub"), .filePath = "file.txt", .status = "M"}),
                Not(std::nullopt));
    EXPECT_EQ(treeAt(repository), before);
}

TEST_F(Discard_Elsewhere, UntrackedFileIsNotLookedForFromAFolderInsideEither) {
    write("new.txt", "new\n");
    write("sub/new.txt", "new below\n");
    const Tree before = treeAt(repository);
    EXPECT_THAT(discardIn({.repoPath = in("sub"), .filePath = "new.txt", .status = "??"}),
                Not(std::nullopt));
    EXPECT_EQ(treeAt(repository), before);
}

TEST_F(Discard_Command, UntrackedFileIsCleaned) {
    write("new.txt", "new");
    discard("new.txt", "??");
    EXPECT_EQ(launcher.launches.back().executable, "/usr/bin/git");
    EXPECT_THAT(launcher.launches.back().arguments,
                ElementsAre("-C", repository, "clean", "-f", "-d", "--", "new.txt"));
}

TEST_F(Discard_Command, AnythingElseIsRestoredInIndexAndWorkTree) {
    write("file.txt", "changed");
    discard("file.txt", "M");
    EXPECT_THAT(launcher.launches, ::testing::Contains(::testing::Field(
                                       &RecordingLauncher::Launch::arguments,
                                       ElementsAre("-C", repository, "restore", "--source=HEAD",
                                                   "--staged", "--worktree", "--", "file.txt"))));
}

TEST_F(Discard_Command, NameWithAMeaningIsPassedLiterally) {
    write("a*", "new");
    discard("a*", "??");
    EXPECT_EQ(launcher.launches.back().arguments.back(), ":(literal)a*");
}

TEST_F(Discard_Command, EnvironmentIsExactlyTheFourVariables) {
    write("file.txt", "changed");
    discard("file.txt", "M");
    for (const auto& launch : launcher.launches) {
        EXPECT_THAT(
            launch.environment,
            ElementsAre("HOME=" + (folder / "home"), "GIT_TERMINAL_PROMPT=0",
                        "PATH=/usr/bin:/bin:/usr/sbin:/sbin:/usr/local/bin:/opt/homebrew/bin",
                        "LC_ALL=C"));
    }
}

}  // namespace
}  // namespace tarnbeck::testing
