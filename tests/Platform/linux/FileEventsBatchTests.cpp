// How events are gathered and told: when, how many, and what is said when there are too many.
#include <algorithm>
#include <chrono>

#include <sys/stat.h>

#include "WatchedRoot.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using testing::ObservedEvents;

class FileEvents_Batches : public testing::WatchedRoot {
  protected:
    // Opens, and waits in the first delivery.
    void watchAndHold(const ObservedEvents::Excludes& excludes = {}) {
        watch(excludes);
        events_.hold();
        makeFolder("first");  // one event; a file that is written is two
        ASSERT_TRUE(events_.waitUntilHeld());
    }
    void makeFiles(const std::string& prefix, int count) {
        for (int index = 0; index < count; ++index) write(prefix + std::to_string(index));
    }
    // What came after the delivery that was held.
    FileEventBatch secondBatch() {
        events_.letGo();
        EXPECT_TRUE(events_.waitForBatches(2));
        return events_.batches().at(1).content;
    }
};

TEST_F(FileEvents_Batches, AreHalfASecondApart) {
    watch();
    const auto start = std::chrono::steady_clock::now();
    for (int count = 0; count < 4; ++count) {
        write("file" + std::to_string(count));
        ASSERT_TRUE(events_.waitForBatches(count + 1));
    }
    auto earliest = start;
    for (const auto& batch : events_.batches()) {
        EXPECT_GE(batch.at, earliest);
        earliest += 500ms;
    }
}

TEST_F(FileEvents_Batches, FirstEventDoesNotWaitForMore) {
    // A busy machine may be late now and then; a pause would make all of them late.
    std::chrono::steady_clock::duration shortest = 1h;
    for (int attempt = 0; attempt < 5 && shortest >= 450ms; ++attempt) {
        watch();
        const auto start = std::chrono::steady_clock::now();
        ASSERT_TRUE(events_.waitFor(write("file", std::to_string(attempt))));
        shortest = std::min(shortest, events_.batches().front().at - start);
        events_.close();
        events_.forget();
    }
    EXPECT_LT(shortest, 450ms);
}

TEST_F(FileEvents_Batches, GatherWhatComesMeanwhile) {
    watchAndHold();
    makeFiles("file", 100);
    const FileEventBatch batch = secondBatch();
    EXPECT_TRUE(std::find(batch.paths.begin(), batch.paths.end(), at("file99")) !=
                batch.paths.end());
}

TEST_F(FileEvents_Batches, HoldNoPathTwice) {
    watchAndHold();
    makeFolder("a");
    for (int count = 0; count < 50; ++count) {
        write("a/file", std::to_string(count));
        write("a/other", std::to_string(count));
    }
    FileEventBatch batch = secondBatch();
    ASSERT_TRUE(std::is_sorted(batch.paths.begin(), batch.paths.end()));
    EXPECT_EQ(std::adjacent_find(batch.paths.begin(), batch.paths.end()), batch.paths.end());
}

TEST_F(FileEvents_Batches, MayHold512Paths) {
    watchAndHold();
    makeFiles("file", 512);
    EXPECT_EQ(secondBatch().paths.size(), 512);
}

TEST_F(FileEvents_Batches, WithMorePathsSayThatEventsWereLost) {
    watchAndHold();
    makeFiles("file", 513);
    EXPECT_EQ(secondBatch(), (FileEventBatch{.paths = {}, .eventsWereLost = true}));
}

TEST_F(FileEvents_Batches, DoNotCountExcludedNames) {
    for (int index = 0; index < 700; ++index) makeFolder("folder" + std::to_string(index));
    watchAndHold({"index.lock"});
    for (int index = 0; index < 700; ++index) {
        write("folder" + std::to_string(index) + "/index.lock");
    }
    write("last");
    events_.letGo();
    EXPECT_TRUE(events_.waitFor(at("last")));
    EXPECT_EQ(events_.losses(), 0);
}

TEST_F(FileEvents_Batches, TellAgainAfterALoss) {
    watchAndHold();
    makeFiles("file", 600);
    EXPECT_TRUE(secondBatch().eventsWereLost);
    EXPECT_TRUE(events_.waitFor(write("later")));
}

TEST_F(FileEvents_Batches, TellAFileUnderThePathThatItHadWhenItsFolderIsGone) {
    write("brief/file");
    watchAndHold();
    write("brief/file", "other");
    fs::remove_all(at("brief"));
    events_.letGo();
    EXPECT_TRUE(events_.waitFor(at("brief/file")));
}

class FileEvents_Overflow : public FileEvents_Batches {
  protected:
    // More events than the system's queue holds.
    void overflow() {
        std::ifstream limit("/proc/sys/fs/inotify/max_queued_events");
        int most = 0;
        ASSERT_TRUE(limit >> most);
        ASSERT_LT(most, 1000000);
        for (int count = 0; count <= most / 2; ++count) {
            ASSERT_EQ(chmod(at("a").c_str(), 0700), 0);
            ASSERT_EQ(chmod(at("b").c_str(), 0700), 0);
        }
    }
};

TEST_F(FileEvents_Overflow, SaysThatEventsWereLost) {
    write("a");
    write("b");
    watchAndHold();
    overflow();
    events_.letGo();
    ASSERT_TRUE(events_.waitForLoss());
    // What was still in the queue may be told before.
    EXPECT_EQ(events_.batches().back().content,
              (FileEventBatch{.paths = {}, .eventsWereLost = true}));
}

TEST_F(FileEvents_Overflow, FindsFoldersAgainThatWereMadeMovedAndRemovedMeanwhile) {
    write("a");
    write("b");
    makeFolder("from/moved/deep");
    makeFolder("to");
    makeFolder("removed");
    makeFolder("out/below");
    watchAndHold();
    overflow();
    makeFolder("made/deep");
    fs::rename(at("from/moved"), at("to/moved"));
    fs::remove(at("removed"));
    fs::rename(at("out"), folder_ / "out");
    events_.letGo();
    ASSERT_TRUE(events_.waitForLoss());
    startAfresh();
    const std::size_t watches = testing::ownWatches();
    events_.close();
    events_.forget();
    watch();
    EXPECT_EQ(watches, testing::ownWatches());
    folder_.write("out/below/file", "text");
    write("made/deep/file");
    write("to/moved/deep/file");
    EXPECT_TRUE(events_.waitFor(at("made/deep/file")));
    EXPECT_TRUE(events_.waitFor(at("to/moved/deep/file")));
    EXPECT_EQ(told(), (std::set<std::string>{at("made/deep/file"), at("to/moved/deep/file")}));
}

TEST_F(FileEvents_Overflow, FindsARootAgainThatWasReplacedMeanwhile) {
    write("root/a");
    write("root/b");
    ASSERT_EQ(events_.open({at("root")}), std::nullopt);
    events_.hold();
    write("root/first");
    ASSERT_TRUE(events_.waitUntilHeld());
    root_ += "/root";
    overflow();
    fs::remove_all(root_);
    write("root/file");
    events_.letGo();
    ASSERT_TRUE(events_.waitForLoss());
    EXPECT_TRUE(events_.waitFor(write("root/file", "other")));
}

}  // namespace
}  // namespace tarnbeck
