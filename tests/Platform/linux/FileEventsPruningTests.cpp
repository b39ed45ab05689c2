// What is not watched at all, and what is although it might look so.
#include <map>

#include "FileSystemWatcher.h"
#include "GitFixture.h"
#include "WatchedRoot.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::git;
using testing::ownWatches;

class FileEvents_Pruning : public testing::WatchedRoot {
  protected:
    // The watches that the stream takes.
    std::size_t watchesWhenOpen(const testing::ObservedEvents::Excludes& excludes = {}) {
        watch(excludes);
        const std::size_t count = ownWatches();
        events_.close();
        return count;
    }
    // True where a write in the folder is told.
    bool isSeen(const std::string& folder) {
        events_.forget();
        const std::string file = write(folder + "/file", std::to_string(marks_));
        waitUntilTold();
        return events_.wasTold(file);
    }
};

TEST_F(FileEvents_Pruning, FoldersBelowAnExcludedOneCostNothing) {
    makeFolder("source");
    const std::size_t before = watchesWhenOpen({"node_modules"});
    for (int count = 0; count < 100; ++count) {
        makeFolder("source/node_modules/package" + std::to_string(count) + "/lib");
    }
    EXPECT_EQ(watchesWhenOpen({"node_modules"}), before);
}

TEST_F(FileEvents_Pruning, TreeThatIsInstalledLaterCostsNothingEither) {
    watch({"node_modules"});
    const std::size_t before = ownWatches();
    makeFolder("node_modules");
    waitUntilTold();
    for (int count = 0; count < 1000; ++count) {
        write("node_modules/package" + std::to_string(count) + "/package.json");
    }
    waitUntilTold();
    EXPECT_EQ(ownWatches(), before);
    EXPECT_EQ(events_.losses(), 0);
}

TEST_F(FileEvents_Pruning, FolderThatLosesItsExcludedNameIsWatched) {
    write("node_modules/package/file");
    watch({"node_modules"});
    fs::rename(at("node_modules"), at("kept"));
    waitUntilTold();
    EXPECT_TRUE(events_.waitFor(write("kept/package/file", "other")));
}

TEST_F(FileEvents_Pruning, FolderThatGetsAnExcludedNameIsWatchedNoMore) {
    watch({"node_modules"});
    const std::size_t before = ownWatches();
    write("packages/package/file");
    waitUntilTold();
    fs::rename(at("packages"), at("node_modules"));
    waitUntilTold();
    EXPECT_EQ(ownWatches(), before);
}

TEST_F(FileEvents_Pruning, ObjectsOfARepositoryCostNothing) {
    testing::makeRepository(at("repository"));
    const std::size_t before = watchesWhenOpen();
    for (int count = 0; count < 50; ++count) {
        makeFolder("repository/.git/objects/" + std::to_string(count + 10));
    }
    makeFolder("repository/.git/lfs/objects/00");
    makeFolder("repository/.git/annex/objects/00");
    makeFolder("repository/.git/fsmonitor--daemon/cookies");
    EXPECT_EQ(watchesWhenOpen(), before);
}

TEST_F(FileEvents_Pruning, ObjectsOfARepositoryThatIsMadeLaterCostNothing) {
    watch();
    const std::size_t before = ownWatches();
    testing::makeRepository(at("repository"));
    waitUntilTold();
    std::size_t folders = 1;  // all but the object store
    for (auto each = fs::recursive_directory_iterator(at("repository"));
         each != fs::recursive_directory_iterator(); ++each) {
        if (each->path().filename() == "objects") {
            each.disable_recursion_pending();
        } else {
            folders += each->is_directory();
        }
    }
    EXPECT_EQ(ownWatches(), before + folders);
}

TEST_F(FileEvents_Pruning, FolderObjectsOfTheUserIsSeen) {
    makeFolder("repository/.git");
    makeFolder("repository/objects/lfs");
    makeFolder("objects");
    watch();
    EXPECT_TRUE(isSeen("repository/objects/lfs"));
    EXPECT_TRUE(isSeen("objects"));
}

TEST_F(FileEvents_Pruning, BranchesThatAreCalledLikeObjectStoresAreSeen) {
    testing::makeRepository(at("repository"));
    git(at("repository"), {"branch", "objects/one"});
    git(at("repository"), {"update-ref", "refs/remotes/objects/objects/one", "HEAD"});
    watch();
    for (const auto* branch : {"objects/two", "objects/objects/lfs/three", "lfs/four"}) {
        git(at("repository"), {"branch", branch});
        EXPECT_TRUE(events_.waitFor(at("repository/.git/refs/heads/" + std::string(branch))));
        EXPECT_TRUE(events_.waitFor(at("repository/.git/logs/refs/heads/" + std::string(branch))));
    }
    EXPECT_TRUE(isSeen("repository/.git/refs/remotes/objects/objects"));
}

// A repository with submodules, one of which has a slash in its name and one is called "objects".
class FileEvents_Submodules : public FileEvents_Pruning {
  protected:
    void SetUp() override {
        testing::makeRepository(folder_ / "source");
        testing::makeRepository(at("repository"));
    }
    void addSubmodule(const std::string& name) {
        git(at("repository"), {"-c", "protocol.file.allow=always", "submodule", "--quiet", "add",
                               "--name", name, folder_ / "source", "sub/" + name});
    }
    std::string gitFolder(const std::string& name) { return "repository/.git/modules/" + name; }
};

TEST_F(FileEvents_Submodules, TheirObjectStoresCostNothing) {
    addSubmodule("plain");
    addSubmodule("libraries/deep");
    addSubmodule("objects");
    const std::size_t before = watchesWhenOpen();
    for (const auto* name : {"plain", "libraries/deep", "objects"}) {
        makeFolder(gitFolder(name) + "/objects/zz");
        makeFolder(gitFolder(name) + "/lfs/zz");
    }
    EXPECT_EQ(watchesWhenOpen(), before);
}

TEST_F(FileEvents_Submodules, TheirReferencesAreSeenWhateverTheirNames) {
    addSubmodule("libraries/deep");
    addSubmodule("objects");
    for (const auto* name : {"libraries/deep", "objects"}) {
        makeFolder(gitFolder(name) + "/refs/heads/objects");
        makeFolder(gitFolder(name) + "/refs/remotes/origin/objects");
        makeFolder(gitFolder(name) + "/logs/refs/heads/objects");
    }
    watch();
    for (const auto* name : {"libraries/deep", "objects"}) {
        EXPECT_TRUE(isSeen(gitFolder(name)));
        EXPECT_TRUE(isSeen(gitFolder(name) + "/refs/heads/objects"));
        EXPECT_TRUE(isSeen(gitFolder(name) + "/refs/remotes/origin/objects"));
        EXPECT_TRUE(isSeen(gitFolder(name) + "/logs/refs/heads/objects"));
    }
}

TEST_F(FileEvents_Submodules, OneThatIsAddedLaterIsSeenWithoutItsObjects) {
    watch();
    addSubmodule("later");
    waitUntilTold();
    EXPECT_TRUE(isSeen(gitFolder("later") + "/refs/heads"));
    EXPECT_FALSE(isSeen(gitFolder("later") + "/objects/pack"));
}

TEST_F(FileEvents_Submodules, LinkedWorktreesAreSeen) {
    git(at("repository"), {"worktree", "add", "-q", folder_ / "tree", "-b", "tree"});
    git(at("repository"), {"worktree", "add", "-q", folder_ / "objects", "-b", "other"});
    watch();
    EXPECT_TRUE(isSeen("repository/.git/worktrees/tree"));
    EXPECT_TRUE(isSeen("repository/.git/worktrees/objects"));
    EXPECT_TRUE(isSeen("repository/.git/worktrees"));
}

}  // namespace
}  // namespace tarnbeck
