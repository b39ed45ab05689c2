// Folders that are made, moved and removed while they are watched.
#include <thread>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include "FileDescriptor.h"
#include "MachineRights.h"
#include "WatchedRoot.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::ownWatches;

class FileEvents_Folders : public testing::WatchedRoot {
  protected:
    std::string elsewhere_ = folder_.makeFolder("elsewhere");
};

TEST_F(FileEvents_Folders, FileInANewFolderIsTold) {
    watch();
    makeFolder("new");
    waitUntilTold();
    EXPECT_TRUE(events_.waitFor(write("new/file")));
}

TEST_F(FileEvents_Folders, WhatIsMadeInANewFolderAtOnceIsTold) {
    watch();
    for (int count = 0; count < 50; ++count) write("new" + std::to_string(count) + "/a/b/file");
    for (int count = 0; count < 50; ++count) {
        const std::string folder = at("new" + std::to_string(count));
        EXPECT_TRUE(events_.waitFor(folder));
        EXPECT_TRUE(events_.waitFor(folder + "/a/b"));
        EXPECT_TRUE(events_.waitFor(folder + "/a/b/file"));
    }
}

TEST_F(FileEvents_Folders, WriteDeepInARenamedFolderHasItsNewPath) {
    write("old/a/b/c/file");
    watch();
    fs::rename(at("old"), at("new"));
    startAfresh();
    EXPECT_TRUE(events_.waitFor(write("new/a/b/c/file", "other")));
    EXPECT_FALSE(events_.wasTold(at("old/a/b/c/file")));
}

TEST_F(FileEvents_Folders, WriteInAFolderThatMovedElsewhereHasItsNewPath) {
    write("a/moved/below/file");
    makeFolder("b/c");
    watch();
    fs::rename(at("a/moved"), at("b/c/moved"));
    EXPECT_TRUE(events_.waitFor(at("a/moved")));
    EXPECT_TRUE(events_.waitFor(at("b/c/moved")));
    startAfresh();
    EXPECT_TRUE(events_.waitFor(write("b/c/moved/below/file", "other")));
}

TEST_F(FileEvents_Folders, WriteAfterManyRenamesInARowHasTheLastPath) {
    write("name0/inner0/file");
    watch();
    for (int count = 0; count < 200; ++count) {
        const std::string outer = "name" + std::to_string(count);
        fs::rename(at(outer + "/inner" + std::to_string(count)),
                   at(outer + "/inner" + std::to_string(count + 1)));
        fs::rename(at(outer), at("name" + std::to_string(count + 1)));
    }
    startAfresh();
    EXPECT_TRUE(events_.waitFor(write("name200/inner200/file", "other")));
}

TEST_F(FileEvents_Folders, FoldersThatChangePlacesChangeTheirPaths) {
    write("left/only-left");
    write("right/only-right");
    watch();
    ASSERT_EQ(
        renameat2(AT_FDCWD, at("left").c_str(), AT_FDCWD, at("right").c_str(), RENAME_EXCHANGE), 0);
    startAfresh();
    write("left/only-right", "other");
    write("right/only-left", "other");
    EXPECT_TRUE(events_.waitFor(at("left/only-right")));
    EXPECT_TRUE(events_.waitFor(at("right/only-left")));
    EXPECT_FALSE(events_.wasTold(at("left/only-left")));
}

TEST_F(FileEvents_Folders, NewFolderUnderAnOldNameIsNotTheOldOne) {
    write("name/file");
    watch();
    fs::rename(at("name"), at("other"));
    write("name/file");
    startAfresh();
    write("name/first");
    write("other/second");
    EXPECT_TRUE(events_.waitFor(at("name/first")));
    EXPECT_TRUE(events_.waitFor(at("other/second")));
}

TEST_F(FileEvents_Folders, FolderThatMovedInIsWatchedToItsEnd) {
    folder_.write("elsewhere/in/a/b/file", "text");
    watch();
    fs::rename(elsewhere_ + "/in", at("in"));
    EXPECT_TRUE(events_.waitFor(at("in")));
    EXPECT_TRUE(events_.waitFor(write("in/a/b/file", "other")));
}

TEST_F(FileEvents_Folders, FolderThatMovedOutIsWatchedNoMore) {
    makeFolder("out/a/b");
    watch();
    const std::size_t before = ownWatches();
    fs::rename(at("out"), elsewhere_ + "/out");
    EXPECT_TRUE(events_.waitFor(at("out")));
    startAfresh();
    EXPECT_EQ(ownWatches(), before - 3);
    folder_.write("elsewhere/out/a/b/file", "text");
    waitUntilTold();
    EXPECT_EQ(told(), std::set<std::string>());
}

TEST_F(FileEvents_Folders, FolderThatMovedOutAndInAgainIsWatched) {
    write("away/a/file");
    watch();
    for (int count = 0; count < 10; ++count) {
        fs::rename(at("away"), elsewhere_ + "/away");
        fs::rename(elsewhere_ + "/away", at("away"));
    }
    startAfresh();
    EXPECT_TRUE(events_.waitFor(write("away/a/file", "other")));
}

TEST_F(FileEvents_Folders, FolderThatIsMadeAndRemovedAtOnceDoesNoHarm) {
    watch();
    for (int count = 0; count < 500; ++count) {
        fs::create_directory(at("brief"));
        fs::remove(at("brief"));
    }
    EXPECT_TRUE(events_.waitFor(at("brief")));
    EXPECT_TRUE(events_.waitFor(write("brief/file")));
    EXPECT_EQ(events_.losses(), 0);
}

TEST_F(FileEvents_Folders, RemovedTreeLeavesNoWatch) {
    watch();
    const std::size_t before = ownWatches();
    makeFolder("a/b/c");
    waitUntilTold();
    EXPECT_EQ(ownWatches(), before + 3);
    fs::remove_all(at("a"));
    waitUntilTold();
    EXPECT_EQ(ownWatches(), before);
}

TEST_F(FileEvents_Folders, FolderIsWatchedAgainThatTookThePlaceOfOneInUse) {
    makeFolder("used");
    watch();
    const FileDescriptor user(open(at("used").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    fs::remove(at("used"));
    makeFolder("used");
    startAfresh();
    EXPECT_TRUE(events_.waitFor(write("used/file")));
}

TEST_F(FileEvents_Folders, FoldersMadeByTwoThreadsBetweenMovesAreAllWatched) {
    makeFolder("parent");
    watch();
    std::thread mover([this] {
        for (int count = 0; count < 200; ++count) {
            fs::rename(at("parent"), at("other"));
            fs::rename(at("other"), at("parent"));
        }
    });
    int made = 0;
    for (int count = 0; count < 400 || made == 0; ++count) {
        const std::string name = at("parent/" + std::to_string(made));
        made += mkdir(name.c_str(), 0777) == 0;
    }
    mover.join();
    startAfresh();
    std::set<std::string> files;
    for (int count = 0; count < made; ++count) {
        files.insert(write("parent/" + std::to_string(count) + "/file"));
    }
    for (const std::string& file : files) EXPECT_TRUE(events_.waitFor(file));
}

TEST_F(FileEvents_Folders, FolderIsWatchedOnceItCanBeRead) {
    const testing::WithoutRootRights meetingModes;  // the reader's thread takes after this one
    makeFolder("closed");
    fs::permissions(at("closed"), fs::perms::none);
    watch();
    fs::permissions(at("closed"), fs::perms::owner_all);
    startAfresh();
    EXPECT_TRUE(events_.waitFor(write("closed/file")));
}

TEST_F(FileEvents_Folders, WhatADiskHidIsWatchedWhenTheDiskIsGone) {
    makeFolder("disk");
    const auto failure = testing::runOnSmallDisk(at("disk"), 1 << 20, [this] {
        write("disk/on-the-disk");
        watch();
        ASSERT_EQ(umount(at("disk").c_str()), 0);
        startAfresh();
        EXPECT_TRUE(events_.waitFor(write("disk/below")));
        events_.close();
    });
    if (failure) GTEST_SKIP() << *failure;
}

}  // namespace
}  // namespace tarnbeck
