// What a stream takes of the machine, and how it ends.
#include <atomic>
#include <cerrno>
#include <chrono>
#include <functional>
#include <future>
#include <thread>

#include <sys/resource.h>
#include <sys/stat.h>

#include "FileSystem.h"
#include "OwnDescriptors.h"
#include "WatchedRoot.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using testing::openDescriptors;
using testing::ownThreads;

class FileEvents_End : public testing::WatchedRoot {
  protected:
    // The thread sanitizer has a thread of its own from the first other thread on.
    FileEvents_End() {
        std::thread([] {}).join();
    }
};

// The task that reads events, while there is one only.
std::filesystem::path readersTask() {
    for (const auto& each : std::filesystem::directory_iterator("/proc/self/task")) {
        if (testing::contentOf(each.path() / "comm") == "tarnbeck-events\n") return each.path();
    }
    return {};
}

// How often it was switched to, for whatever reason.
long switchesOf(const std::filesystem::path& task) {
    constexpr std::string_view field = "ctxt_switches:";
    std::ifstream lines(task / "status");
    long switches = 0;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t at = line.find(field);
        if (at != std::string::npos) switches += std::stol(line.substr(at + field.size()));
    }
    return switches;
}

TEST_F(FileEvents_End, StreamIsTwoDescriptorsAndOneThread) {
    const auto descriptors = openDescriptors();
    const auto threads = ownThreads();
    for (int count = 0; count < 50; ++count) makeFolder("folder" + std::to_string(count));
    watch();
    waitUntilTold();
    EXPECT_EQ(openDescriptors(), descriptors + 2);
    EXPECT_EQ(ownThreads(), threads + 1);
}

TEST_F(FileEvents_End, LeavesNoDescriptorNoThreadAndNoWatch) {
    const auto descriptors = openDescriptors();
    const auto threads = ownThreads();
    for (int count = 0; count < 20; ++count) {
        watch();
        write("folder" + std::to_string(count) + "/file");
        events_.close();
    }
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_EQ(ownThreads(), threads);
    EXPECT_EQ(testing::ownWatches(), 0);
}

TEST_F(FileEvents_End, NothingIsToldAfterIt) {
    watch();
    waitUntilTold();
    events_.close();
    events_.forget();
    write("file");
    EXPECT_EQ(told(), std::set<std::string>());
}

TEST_F(FileEvents_End, WaitsForADeliveryThatRuns) {
    watch();
    events_.hold();
    write("file");
    ASSERT_TRUE(events_.waitUntilHeld());
    std::atomic<bool> isClosed = false;
    std::thread closing([&] {
        events_.close();
        isClosed = true;
    });
    EXPECT_FALSE(isClosed);
    events_.letGo();
    closing.join();
    EXPECT_EQ(events_.batches().size(), 1);
}

TEST_F(FileEvents_End, MayComeFromWithinADelivery) {
    std::promise<void> isClosed;
    std::unique_ptr<FileEventStream> stream;
    std::promise<void> isOpen;
    const testing::ObservedEvents::Excludes none;
    auto opened = makeFileEvents()->open(
        {.roots = {root_}, .excludes = none, .deliver = [&](const FileEventBatch&) {
             isOpen.get_future().wait();
             stream.reset();
             isClosed.set_value();
         }});
    stream = std::move(*std::move(opened));
    isOpen.set_value();
    write("file");
    EXPECT_EQ(isClosed.get_future().wait_for(60s), std::future_status::ready);
}

TEST_F(FileEvents_End, IsPromptInTheMiddleOfAStorm) {
    std::vector<std::string> files;
    for (int count = 0; count < 1000; ++count) {
        files.push_back(write("file" + std::to_string(count)));
    }
    watch();
    std::atomic<bool> isOver = false;
    std::thread storm([&] {
        for (std::size_t count = 0; !isOver; ++count) {
            chmod(files[count % files.size()].c_str(), 0600);
        }
    });
    ASSERT_TRUE(events_.waitForLoss());
    const auto start = std::chrono::steady_clock::now();
    events_.close();
    const auto duration = std::chrono::steady_clock::now() - start;
    isOver = true;
    storm.join();
    EXPECT_LT(duration, 500ms);
}

std::chrono::nanoseconds durationOf(const std::function<void()>& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::steady_clock::now() - start;
}

TEST_F(FileEvents_End, IsPromptInTheMiddleOfALongWalk) {
    constexpr std::size_t folders = 4000;
    for (std::size_t count = 0; count < folders; ++count) {
        makeFolder(std::to_string(count % 100) + "/" + std::to_string(count));
    }
    const auto wholeWalk = durationOf([this] { watch(); });
    events_.close();
    const std::string tree = folder_ / "tree";
    std::filesystem::rename(root_, tree);
    std::size_t watched = folders;
    std::chrono::nanoseconds closing{};
    while (watched > folders / 4) {  // until this thread is quick enough
        watch();
        std::filesystem::rename(tree, root_);
        do watched = testing::ownWatches();
        while (watched < 50);
        closing = durationOf([this] { events_.close(); });
        std::filesystem::rename(root_, tree);
    }
    EXPECT_LT(closing, wholeWalk / 2);
}

TEST_F(FileEvents_End, OpeningThatIsNoLongerWantedEndsEarly) {
    for (int count = 0; count < 200; ++count) makeFolder(std::to_string(count));
    const std::set<std::string, std::less<>> excludes;
    const auto stream =
        makeFileEvents()->open({.roots = {root_},
                                .excludes = excludes,
                                .deliver = [](const FileEventBatch&) {},
                                .report = [](const std::string&) {},
                                .isUnwanted = std::make_shared<std::atomic<bool>>(true)});
    EXPECT_TRUE(stream);
    EXPECT_LT(testing::ownWatches(), 100);
}

TEST_F(FileEvents_End, NoThreadWakesWhileNothingHappens) {
    makeFolder("a/b");
    watch();
    waitUntilTold();
    const auto task = readersTask();
    ASSERT_FALSE(task.empty());
    constexpr std::size_t batches = 6;
    testing::ObservedEvents others;  // whose batches tell the time
    ASSERT_EQ(others.open({folder_.makeFolder("others")}), std::nullopt);
    const long before = switchesOf(task);
    for (std::size_t count = 1; count <= batches; ++count) {
        folder_.makeFolder("others/" + std::to_string(count));
        ASSERT_TRUE(others.waitForBatches(count));
    }
    // The end of the delivery may still be among them, but nothing for each half second.
    EXPECT_LT(switchesOf(task) - before, long{batches} / 2);
}

TEST_F(FileEvents_End, NoThreadWakesForWhatHappensBesideTheRoots) {
    watch();
    waitUntilTold();
    const auto task = readersTask();
    ASSERT_FALSE(task.empty());
    const long before = switchesOf(task);
    for (int count = 0; count < 100; ++count) {
        folder_.write("beside" + std::to_string(count), "text");
    }
    waitUntilTold();
    EXPECT_LT(switchesOf(task) - before, 20);
}

TEST_F(FileEvents_End, OpeningFailsWithTheSystemsWordsWhereThereIsNoDescriptor) {
    // What the sanitizers want to know once takes descriptors itself, so they see it before.
    const std::string reason = systemErrorText(EMFILE);
    const auto opening = [this] { return events_.open({root_}); };
    ASSERT_EQ(opening(), std::nullopt);
    events_.close();
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const auto failure = opening();
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(failure, reason);
}

}  // namespace
}  // namespace tarnbeck
