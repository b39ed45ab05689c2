// What the scan shows of repositories of unusual kinds and at unusual places.
#include <algorithm>
#include <filesystem>
#include <tuple>

#include "RealScan.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using RealScan_Bare = RealScanTest;
using RealScan_Places = RealScanTest;
using RealScan_Locks = RealScanTest;
using RealScan_Submodules = RealScanTest;
using RealScan_Formats = RealScanTest;

TEST_F(RealScan_Bare, WorkTreeThatIsSaidToBeBareShowsBranchesAndChangesAndItsIssue) {
    inGit({"branch", "other"});
    write("new.txt", "");
    inGit({"config", "core.bare", "true"});
    const GitRepository repository = scanned();
    EXPECT_EQ(repository.gitConfigurationIssue, GitConfigurationIssue::coreBareWorktreeMismatch);
    EXPECT_EQ(repository.currentBranch, "main");
    EXPECT_EQ(repository.branches.size(), 2U);
    EXPECT_THAT(repository.uncommittedChanges, ElementsAre(FileChange{"??", "new.txt"}));
    EXPECT_EQ(repository.syncStatus, GitSyncStatus(GitSyncStatus::NoUpstream{}));
    EXPECT_THAT(real_.lines(), IsEmpty());
}

TEST_F(RealScan_Bare, WorkTreeThatIsSaidToBeBareIsNeverClean) {
    EXPECT_TRUE(scanned().isClean());
    inGit({"config", "core.bare", "true"});
    const GitRepository repository = scanned();
    EXPECT_THAT(repository.uncommittedChanges, IsEmpty());
    EXPECT_FALSE(repository.isClean());
}

TEST_F(RealScan_Bare, WorkTreeThatIsSaidToBeBareShowsItsStashesAndUpstream) {
    makeOrigin();
    write("file.txt", "changed\n");
    inGit({"stash", "push", "-q"});
    inGit({"config", "core.bare", "true"});
    const GitRepository repository = scanned();
    EXPECT_EQ(repository.stashCount, 1);
    EXPECT_EQ(repository.syncStatus, GitSyncStatus(GitSyncStatus::UpToDate{"origin/main"}));
}

// Today's git lets the explicit form answer "false" for it, whatever the folder is.
TEST_F(RealScan_Bare, BareRepositoryInAGitFolderIsScannedWithTheIssue) {
    const std::string place = real_.folder.makeFolder("bare");
    git("/", {"clone", "-q", "--bare", path_, place + "/.git"});
    const GitRepository repository = scanned(place);
    EXPECT_EQ(repository.gitConfigurationIssue, GitConfigurationIssue::coreBareWorktreeMismatch);
    EXPECT_THAT(repository.branches, ElementsAre(GitBranch{"main", true}));
    EXPECT_FALSE(repository.isClean());
}

TEST_F(RealScan_Bare, BareRepositoryWithoutAGitFolderIsAbsentWithoutALine) {
    git("/", {"clone", "-q", "--bare", path_, real_.folder / "bare.git"});
    EXPECT_EQ(real_.scan(real_.folder / "bare.git"), std::nullopt);
    EXPECT_THAT(real_.lines(), IsEmpty());
}

TEST_F(RealScan_Places, NamesWithBlanksQuotesAndLineFeedsAreNamesLikeOthers) {
    for (const std::string name :
         {"with blank", "with 'quotes\"", "line\nfeed", "$HOME", "d\xC3\xA4nisch", "not utf-8 \xFF",
          "-dash", "*", "~", "@{0}", ":(literal)x"}) {
        const std::string path = makeRepository(real_.folder / name);
        real_.folder.write(name + "/new.txt", "");
        const GitRepository repository = scanned(path);
        EXPECT_EQ(repository.path, path);
        EXPECT_EQ(repository.name, name);
        EXPECT_EQ(repository.currentBranch, "main");
        EXPECT_THAT(repository.uncommittedChanges, ElementsAre(FileChange{"??", "new.txt"}));
    }
    EXPECT_THAT(real_.lines(), IsEmpty());
}

TEST_F(RealScan_Places, AwkwardNamesWorkInTheExplicitFormToo) {
    for (const std::string name : {"-dash", "with 'quotes\"", "line\nfeed"}) {
        const std::string path = makeRepository(real_.folder / name);
        git(path, {"config", "core.bare", "true"});
        const GitRepository repository = scanned(path);
        EXPECT_TRUE(repository.gitConfigurationIssue);
        EXPECT_THAT(repository.uncommittedChanges, IsEmpty());
        EXPECT_EQ(repository.branches.size(), 1U);
    }
}

TEST_F(RealScan_Places, LinkToARepositoryKeepsThePathItWasGiven) {
    fs::create_directory_symlink(path_, real_.folder / "link");
    const GitRepository repository = scanned(real_.folder / "link");
    EXPECT_EQ(repository.path, real_.folder / "link");
    EXPECT_EQ(repository.name, "link");
}

TEST_F(RealScan_Places, FolderInsideARepositoryIsNoRepository) {
    write("inside/file.txt", "");
    EXPECT_EQ(real_.scan(path_ + "/inside"), std::nullopt);
    EXPECT_THAT(real_.lines(), IsEmpty());
}

TEST_F(RealScan_Locks, OneOnTheIndexIsLeftUntouchedAndTheScanSucceeds) {
    write("file.txt", "changed\n");
    write(".git/index.lock", "somebody's");
    const auto time = fs::last_write_time(path_ + "/.git/index.lock");
    EXPECT_THAT(scanned().uncommittedChanges, ElementsAre(FileChange{"M", "file.txt"}));
    EXPECT_EQ(contentOf(path_ + "/.git/index.lock"), "somebody's");
    EXPECT_EQ(fs::last_write_time(path_ + "/.git/index.lock"), time);
    EXPECT_THAT(real_.lines(), IsEmpty());
}

// Every file below `folder` with its size and time.
std::vector<std::tuple<std::string, std::uintmax_t, fs::file_time_type>> contentsOf(
    const std::string& folder) {
    std::vector<std::tuple<std::string, std::uintmax_t, fs::file_time_type>> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        files.emplace_back(entry.path(), entry.is_regular_file() ? entry.file_size() : 0,
                           entry.last_write_time());
    }
    std::ranges::sort(files);
    return files;
}

TEST_F(RealScan_Locks, ScanWritesNothingIntoTheRepository) {
    makeOrigin();
    write("untracked.txt", "");
    // Touched without a change, which git would like to note in the index.
    fs::last_write_time(path_ + "/file.txt", fs::file_time_type::clock::now());
    const auto before = contentsOf(path_);
    scanned();
    EXPECT_EQ(contentsOf(path_), before);
}

TEST_F(RealScan_Submodules, ChangedOneIsAChangeOfItsRepository) {
    makeRepository(real_.folder / "library");
    inGit({"submodule", "--quiet", "add", real_.folder / "library", "library"});
    inGit({"commit", "-q", "-m", "Add library"});
    EXPECT_THAT(scanned().uncommittedChanges, IsEmpty());
    write("library/file.txt", "changed\n");
    EXPECT_THAT(scanned().uncommittedChanges, ElementsAre(FileChange{"M", "library"}));
}

TEST_F(RealScan_Submodules, OneIsItselfARepositoryThroughItsGitFile) {
    makeRepository(real_.folder / "library");
    inGit({"submodule", "--quiet", "add", real_.folder / "library", "library"});
    write("library/new.txt", "");
    const GitRepository repository = scanned(path_ + "/library");
    EXPECT_EQ(repository.name, "library");
    EXPECT_EQ(repository.currentBranch, "main");
    EXPECT_EQ(repository.gitConfigurationIssue, std::nullopt);
    EXPECT_THAT(repository.uncommittedChanges, ElementsAre(FileChange{"??", "new.txt"}));
}

TEST_F(RealScan_Formats, Sha256IsReadLikeSha1) {
    const std::string path = makeRepository(real_.folder / "sha256", {"--object-format=sha256"});
    git(path, {"checkout", "-q", "--detach"});
    const GitRepository repository = scanned(path);
    EXPECT_EQ(repository.worktrees[0].commitHash.value_or("").size(), 64U);
    EXPECT_EQ(repository.currentBranch, git(path, {"rev-parse", "--short", "HEAD"}).substr(0, 7));
}

TEST_F(RealScan_Formats, WorktreeConfigurationOfItsOwnIsRead) {
    inGit({"config", "extensions.worktreeConfig", "true"});
    inGit({"config", "--worktree", "core.ignoreCase", "false"});
    EXPECT_TRUE(scanned().isClean());
}

TEST_F(RealScan_Formats, SparseCheckoutHasNoDeletedFiles) {
    write("kept/a.txt", "");
    write("left out/b.txt", "");
    inGit({"add", "."});
    inGit({"commit", "-q", "-m", "Two folders"});
    inGit({"sparse-checkout", "set", "kept"});
    EXPECT_FALSE(fs::exists(path_ + "/left out"));
    EXPECT_THAT(scanned().uncommittedChanges, IsEmpty());
}

}  // namespace
}  // namespace tarnbeck
