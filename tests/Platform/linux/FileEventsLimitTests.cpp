// What happens when the user's watches are used up. The limit is that of a user namespace of the
// test's own; the machine's stays as it is.
#include <bit>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include <sched.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "WatchCapacity.h"
#include "WatchedRoot.h"

namespace tarnbeck {
namespace {

using testing::ownWatches;

class FileEvents_WatchLimit : public testing::WatchedRoot {
  protected:
    // Runs `check` in a child that may have so many watches more; it fails where `check` does.
    void runWithWatches(int count, const std::function<void()>& check) {
        const long child = syscall(SYS_clone, CLONE_NEWUSER | SIGCHLD, 0, 0, 0, 0);
        if (child == 0) {
            std::ofstream limit("/proc/sys/user/max_inotify_watches");
            if (!(limit << count << std::flush)) std::_Exit(unable);
            check();
            std::cout << std::flush;
            std::_Exit(HasFailure() ? 1 : 0);
        }
        if (child < 0) GTEST_SKIP() << "this machine gives no user namespace";
        int status = 0;
        ASSERT_EQ(waitpid(static_cast<pid_t>(child), &status, 0), child);
        if (WIFEXITED(status) && WEXITSTATUS(status) == unable) {
            GTEST_SKIP() << "this machine lets no user namespace have its own limit";
        }
        EXPECT_EQ(status, 0);
    }
    void makeFolders(const std::string& parent, int count) {
        for (int index = 0; index < count; ++index) {
            makeFolder(parent + "/folder" + std::to_string(index));
        }
    }
    // Those that guard the root, and the root's own.
    int watchesOfAnEmptyRoot() {
        watch();
        const auto count = static_cast<int>(ownWatches());
        events_.close();
        return count;
    }

    static constexpr int unable = 77;
};

std::string expectedCommand(std::int64_t missing) {
    const auto needed = static_cast<std::uint64_t>(watchLimit().value_or(0) + missing);
    return "sysctl fs.inotify.max_user_watches=" + std::to_string(std::bit_ceil(needed));
}

TEST_F(FileEvents_WatchLimit, LineSaysWhichRootHowManyWatchesAndWhatToDo) {
    const int least = watchesOfAnEmptyRoot();
    makeFolders("a", 30);
    runWithWatches(least + 11, [&] {
        watch();
        EXPECT_EQ(events_.lines(),
                  std::vector<std::string>{"FSEVENT watch limit reached: falling back to the timer "
                                           "for " +
                                           root_ + "; watches missing: 20; raise the limit with: " +
                                           expectedCommand(20)});
    });
}

TEST_F(FileEvents_WatchLimit, EventsCountAsLostOnce) {
    const int least = watchesOfAnEmptyRoot();
    makeFolders("a", 30);
    runWithWatches(least + 11, [&] {
        watch();
        ASSERT_TRUE(events_.waitForLoss());
        makeFolders("b", 30);
        waitUntilTold();
        EXPECT_EQ(events_.losses(), 1);
        EXPECT_EQ(events_.lines().size(), 1);
    });
}

TEST_F(FileEvents_WatchLimit, WhatIsWatchedStaysWatched) {
    const int least = watchesOfAnEmptyRoot();
    makeFolders("a", 30);
    runWithWatches(least + 11, [&] {
        watch();
        EXPECT_EQ(ownWatches(), static_cast<std::size_t>(least) + 11);
        ASSERT_TRUE(events_.waitForLoss());
        EXPECT_TRUE(events_.waitFor(write("a/file")));
    });
}

TEST_F(FileEvents_WatchLimit, FolderThatIsMadeBeyondItIsReported) {
    const int least = watchesOfAnEmptyRoot();
    runWithWatches(least + 5, [&] {
        watch();
        EXPECT_EQ(events_.lines(), std::vector<std::string>());
        makeFolders("a", 10);
        ASSERT_TRUE(events_.waitForLoss());
        EXPECT_EQ(events_.lines().size(), 1);
    });
}

TEST_F(FileEvents_WatchLimit, RootsThatAreWholeAreNotNamed) {
    const int least = watchesOfAnEmptyRoot();
    makeFolders("a", 10);
    for (const auto* root : {"b", "c", "d", "e", "f"}) makeFolders(root, 10);
    runWithWatches(least + 11, [&] {
        std::vector<std::string> roots;
        for (const auto* root : {"a", "b", "c", "d", "e", "f"}) roots.push_back(at(root));
        ASSERT_EQ(events_.open(roots), std::nullopt);
        ASSERT_EQ(events_.lines().size(), 1);
        EXPECT_THAT(events_.lines().front(),
                    ::testing::StartsWith("FSEVENT watch limit reached: falling back to the timer "
                                          "for " +
                                          at("b") + ", " + at("c") + ", " + at("d") +
                                          " and 2 more; watches missing: 55;"));
    });
}

TEST_F(FileEvents_WatchLimit, ExcludedFoldersAreNotCounted) {
    const int least = watchesOfAnEmptyRoot();
    makeFolders("a", 5);
    makeFolders("a/folder0/node_modules", 100);
    runWithWatches(least, [&] {
        watch({"node_modules"});
        ASSERT_EQ(events_.lines().size(), 1);
        EXPECT_THAT(events_.lines().front(), ::testing::HasSubstr("watches missing: 6;"));
    });
}

}  // namespace
}  // namespace tarnbeck
