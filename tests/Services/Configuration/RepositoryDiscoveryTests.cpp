#include <filesystem>

#include <sys/stat.h>

#include "FileSystemWatcher.h"
#include "MachineRights.h"
#include "RepositoryDiscovery.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DiscoverRepos : public ::testing::Test {
  protected:
    // What is found below "projects" (unless told otherwise), relative to the home.
    std::vector<std::string> found(std::vector<std::string> in = {"~/projects"},
                                   std::vector<std::string> ignoring = {}) const {
        auto paths = discoverRepos({.in = in, .ignoring = ignoring, .home = home_.path()});
        for (std::string& path : paths) {
            if (path.starts_with(home_.path())) path.erase(0, home_.path().size() + 1);
        }
        return paths;
    }

    void makeRepositories(const std::vector<std::string>& names) const {
        for (const std::string& name : names) home_.makeFolder(name + "/.git");
    }

    testing::TemporaryFolder home_;
};

TEST_F(DiscoverRepos, FindsThemAtAnyDepthSortedByBytes) {
    makeRepositories(
        {"projects/b", "projects/a/z/deep", "projects/a-b", "projects/B", "projects/a/c"});
    EXPECT_THAT(found(), ElementsAre("projects/B", "projects/a-b", "projects/a/c",
                                     "projects/a/z/deep", "projects/b"));
}

TEST_F(DiscoverRepos, SortsAcrossScanDirectories) {
    makeRepositories({"one/z", "two/a"});
    EXPECT_THAT(found({"~/two", "~/one"}), ElementsAre("one/z", "two/a"));
}

TEST_F(DiscoverRepos, SearchesTheProjectsFolderWhereNothingElseIsAsked) {
    makeRepositories({"projects/a", "elsewhere/b"});
    EXPECT_THAT(discoverRepos({.home = home_.path()}), ElementsAre(home_ / "projects/a"));
}

TEST_F(DiscoverRepos, ReportsOneThatIsReachedTwiceOnce) {
    makeRepositories({"projects/a/r"});
    EXPECT_THAT(found({"~/projects", "~/projects/a", "~/projects/../projects/"}),
                ElementsAre("projects/a/r"));
}

TEST_F(DiscoverRepos, NoScanDirectoriesFindNothing) {
    makeRepositories({"projects/a"});
    EXPECT_THAT(found({}), IsEmpty());
}

TEST_F(DiscoverRepos, MissingScanDirectoryIsPassedOver) {
    makeRepositories({"projects/a"});
    EXPECT_THAT(found({"~/gone", "~/projects"}), ElementsAre("projects/a"));
}

TEST_F(DiscoverRepos, ScanDirectoryThatIsAFileIsPassedOver) {
    home_.write("file", "");
    makeRepositories({"projects/a"});
    EXPECT_THAT(found({"~/file", "~/projects"}), ElementsAre("projects/a"));
}

TEST_F(DiscoverRepos, ScanDirectoryItselfIsNoCandidate) {
    makeRepositories({"projects", "projects/a"});
    EXPECT_THAT(found(), ElementsAre("projects/a"));
}

TEST_F(DiscoverRepos, HiddenOrExcludedScanDirectoryIsSearched) {
    makeRepositories({".work/a", "build/b"});
    EXPECT_THAT(found({"~/.work", "~/build"}), ElementsAre(".work/a", "build/b"));
}

TEST_F(DiscoverRepos, GitFileCountsLikeAGitFolder) {
    home_.write("projects/worktree/.git", "gitdir: /elsewhere");
    EXPECT_THAT(found(), ElementsAre("projects/worktree"));
}

TEST_F(DiscoverRepos, RepositoriesInRepositoriesAreNotFound) {
    makeRepositories({"projects/a", "projects/a/vendor/b"});
    EXPECT_THAT(found(), ElementsAre("projects/a"));
}

TEST_F(DiscoverRepos, FolderWithoutGitIsNotReported) {
    home_.write("projects/notes/readme", "");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(DiscoverRepos, ExcludedNameWithAGitIsReported) {
    makeRepositories({"projects/build", "projects/node_modules"});
    EXPECT_THAT(found(), ElementsAre("projects/build", "projects/node_modules"));
}

TEST_F(DiscoverRepos, HiddenFolderWithAGitIsReported) {
    makeRepositories({"projects/.dotfiles"});
    EXPECT_THAT(found(), ElementsAre("projects/.dotfiles"));
}

TEST_F(DiscoverRepos, HiddenFoldersAreNotEntered) {
    makeRepositories({"projects/.hidden/a"});
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(DiscoverRepos, ExcludedFoldersAreNotEntered) {
    for (const std::string& name : FileSystemWatcher::defaultExcludes()) {
        makeRepositories({"projects/" + name + "/a"});
    }
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(DiscoverRepos, ExcludedNamesAreComparedWithTheirCase) {
    makeRepositories({"projects/Build/a"});
    EXPECT_THAT(found(), ElementsAre("projects/Build/a"));
}

TEST_F(DiscoverRepos, IgnoredFolderIsSkippedWithAllItHolds) {
    makeRepositories({"projects/a", "projects/b/c", "projects/bc"});
    EXPECT_THAT(found({"~/projects"}, {"~/projects/./b/"}),
                ElementsAre("projects/a", "projects/bc"));
}

TEST_F(DiscoverRepos, IgnoredRepositoryIsNotReported) {
    makeRepositories({"projects/a", "projects/b"});
    EXPECT_THAT(found({"~/projects"}, {home_ / "projects/a"}), ElementsAre("projects/b"));
}

TEST_F(DiscoverRepos, IgnoredScanDirectoryIsSkippedAndTheNextSearched) {
    makeRepositories({"one/a", "two/b"});
    EXPECT_THAT(found({"~/one", "~/two"}, {"~/one"}), ElementsAre("two/b"));
}

TEST_F(DiscoverRepos, LinkToARepositoryIsNotReported) {
    makeRepositories({"elsewhere/r"});
    home_.makeFolder("projects");
    fs::create_directory_symlink(home_ / "elsewhere/r", home_ / "projects/link");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(DiscoverRepos, ScanDirectoryThatIsALinkIsSearchedUnderItsOwnName) {
    makeRepositories({"elsewhere/a"});
    fs::create_directory_symlink(home_ / "elsewhere", home_ / "projects");
    EXPECT_THAT(found(), ElementsAre("projects/a"));
}

TEST_F(DiscoverRepos, LinkedFolderIsNotEntered) {
    makeRepositories({"elsewhere/r"});
    home_.makeFolder("projects");
    fs::create_directory_symlink(home_ / "elsewhere", home_ / "projects/link");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(DiscoverRepos, LinksInCirclesAndIntoNowhereAreHarmless) {
    makeRepositories({"projects/a/r"});
    fs::create_directory_symlink("..", home_ / "projects/a/up");
    fs::create_symlink("self", home_ / "projects/self");
    fs::create_symlink("gone", home_ / "projects/dangling");
    EXPECT_THAT(found(), ElementsAre("projects/a/r"));
}

TEST_F(DiscoverRepos, LinkedGitFolderCounts) {
    home_.makeFolder("elsewhere/gitdir");
    home_.makeFolder("projects/r");
    fs::create_directory_symlink(home_ / "elsewhere/gitdir", home_ / "projects/r/.git");
    EXPECT_THAT(found(), ElementsAre("projects/r"));
}

TEST_F(DiscoverRepos, DanglingGitLinkCountsAsNone) {
    makeRepositories({"projects/r/inner"});
    fs::create_symlink("gone", home_ / "projects/r/.git");
    EXPECT_THAT(found(), ElementsAre("projects/r/inner"));
}

TEST_F(DiscoverRepos, UnreadableFolderIsPassedOver) {
    makeRepositories({"projects/a", "projects/locked/b"});
    const std::string locked = home_ / "projects/locked";
    ASSERT_EQ(chmod(locked.c_str(), 0), 0);
    {
        const testing::WithoutRootRights rights;
        EXPECT_THAT(found(), ElementsAre("projects/a"));
    }
    ASSERT_EQ(chmod(locked.c_str(), 0700), 0);
    EXPECT_THAT(found(), ElementsAre("projects/a", "projects/locked/b"));
}

TEST_F(DiscoverRepos, PathsThatAreNotUtf8AreFoundAsTheyAre) {
    makeRepositories({"projects/a\xFF"});
    EXPECT_THAT(found(), ElementsAre("projects/a\xFF"));
}

TEST_F(DiscoverRepos, DeepTreesAreSearchedToTheirEnd) {
    std::string deep = "projects";
    for (int level = 0; level < 400; ++level) deep += "/d";
    makeRepositories({deep + "/r"});
    EXPECT_THAT(found(), ElementsAre(deep + "/r"));
}

}  // namespace
}  // namespace tarnbeck
