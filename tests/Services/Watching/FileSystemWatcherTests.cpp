#include <algorithm>
#include <memory>

#include <fmt/format.h>

#include "FileEventsByHand.h"
#include "FileSystemWatcher.h"
#include "ObservedLog.h"
#include "Simulation.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using Paths = std::vector<std::string>;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string numbered(int number) {
    return fmt::format("/r/a/file{}", number);
}

Paths manyPaths(int count) {
    Paths paths;
    for (int number = 0; number < count; ++number) paths.push_back(numbered(number));
    return paths;
}

class FileSystemWatcher_Rules : public ::testing::Test {
  protected:
    FileSystemWatcher_Rules() { watch({"/r/a"}); }

    void watch(Paths paths) {
        watcher->watch(std::move(paths));
        simulation.runUntilIdle();
    }

    void events(Paths paths) {
        source.deliver(std::move(paths));
        simulation.runUntilIdle();
    }

    void afterQuiet() { simulation.advance(1500ms); }

    testing::Simulation simulation;
    testing::ObservedLog observed{simulation};
    testing::FileEventsByHand source;
    std::vector<std::string> reports;
    std::vector<Paths> calls;  // what the callback got, each sorted
    std::unique_ptr<FileSystemWatcher> watcher = std::make_unique<FileSystemWatcher>(
        FileSystemWatcher::Services{
            .loop = simulation.loop,
            .queues = simulation.queues,
            .log = observed.log,
            .events = source,
            .report = [this](std::string_view line) { reports.emplace_back(line); }},
        FileSystemWatcher::Options{.debounceInterval = 1500ms,
                                   .excludes = FileSystemWatcher::defaultExcludes(),
                                   .callback = [this](Paths paths) {
                                       std::ranges::sort(paths);
                                       calls.push_back(std::move(paths));
                                   }});
};

TEST_F(FileSystemWatcher_Rules, PathIsToldWhenTheQuietHasLastedTheWholeInterval) {
    events({"/r/a/x"});
    simulation.advance(1499ms);
    EXPECT_THAT(calls, IsEmpty());
    simulation.advance(1ms);
    EXPECT_THAT(calls, ElementsAre(Paths{"/r/a/x"}));
}

TEST_F(FileSystemWatcher_Rules, BurstEndsInOneCallWithAllItsPaths) {
    events({"/r/a/x"});
    simulation.advance(1s);
    events({"/r/a/y", "/r/a/x"});
    simulation.advance(1s);
    EXPECT_THAT(calls, IsEmpty());
    simulation.advance(500ms);
    EXPECT_THAT(calls, ElementsAre(Paths{"/r/a/x", "/r/a/y"}));
}

TEST_F(FileSystemWatcher_Rules, EachBurstIsToldOnce) {
    events({"/r/a/x"});
    afterQuiet();
    events({"/r/a/y"});
    afterQuiet();
    simulation.advance(1h);
    EXPECT_THAT(calls, ElementsAre(Paths{"/r/a/x"}, Paths{"/r/a/y"}));
}

TEST_F(FileSystemWatcher_Rules, WriteAnywhereBelowNodeModulesIsIgnored) {
    events({"/r/a/node_modules/left-pad/lib/index.js", "/r/a/web/node_modules"});
    simulation.advance(1h);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(FileSystemWatcher_Rules, PathWithTheComponentBuildIsIgnoredHoweverDeep) {
    events({"/r/a/one/two/three/build/four/five/x.o"});
    simulation.advance(1h);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(FileSystemWatcher_Rules, ComponentThatMerelyContainsAnExcludedNameCounts) {
    events({"/r/a/rebuild/x", "/r/a/build.txt"});
    afterQuiet();
    EXPECT_THAT(calls, ElementsAre(Paths{"/r/a/build.txt", "/r/a/rebuild/x"}));
}

TEST_F(FileSystemWatcher_Rules, ExcludedNameAboveTheWatchedFolderCountsToo) {
    events({"/home/user/build/repo/x"});
    simulation.advance(1h);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(FileSystemWatcher_Rules, IndexLockIsDroppedAndHeadIsTold) {
    events({"/r/a/.git/index.lock", "/r/a/.git/HEAD"});
    afterQuiet();
    EXPECT_THAT(calls, ElementsAre(Paths{"/r/a/.git/HEAD"}));
}

TEST_F(FileSystemWatcher_Rules, EveryDefaultNameIsExcluded) {
    ASSERT_EQ(FileSystemWatcher::defaultExcludes().size(), 28);
    for (const std::string& name : FileSystemWatcher::defaultExcludes()) {
        events({"/r/a/" + name, "/r/a/" + name + "/x"});
    }
    simulation.advance(1h);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(FileSystemWatcher_Rules, GitFolderIsNoExcludedName) {
    EXPECT_FALSE(FileSystemWatcher::defaultExcludes().contains(".git"));
}

TEST_F(FileSystemWatcher_Rules, IrrelevantEventPushesBackAPendingDelivery) {
    events({"/r/a/x"});
    simulation.advance(1s);
    events({"/r/a/.git/index.lock"});
    simulation.advance(1s);
    EXPECT_THAT(calls, IsEmpty());
    simulation.advance(500ms);
    EXPECT_THAT(calls, ElementsAre(Paths{"/r/a/x"}));
}

TEST_F(FileSystemWatcher_Rules, IrrelevantEventsAloneAskForNoTimer) {
    events({"/r/a/node_modules/x"});
    EXPECT_EQ(simulation.loop.pendingTimers(), 0);
}

TEST_F(FileSystemWatcher_Rules, TwoHundredAndFiftySixPathsAreToldOneByOne) {
    events(manyPaths(256));
    afterQuiet();
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].size(), 256);
}

TEST_F(FileSystemWatcher_Rules, MorePathsThanThatAreToldAsAnEmptyList) {
    events(manyPaths(257));
    afterQuiet();
    EXPECT_THAT(calls, ElementsAre(Paths{}));
}

TEST_F(FileSystemWatcher_Rules, PathsOfSeveralBatchesCountTogether) {
    events(manyPaths(200));
    events({"/r/a/x"});
    Paths rest = manyPaths(256);
    events({rest.begin() + 200, rest.end()});
    afterQuiet();
    EXPECT_THAT(calls, ElementsAre(Paths{}));
}

TEST_F(FileSystemWatcher_Rules, OverflowIsForgottenWithItsDelivery) {
    events(manyPaths(300));
    afterQuiet();
    events({"/r/a/x"});
    afterQuiet();
    EXPECT_THAT(calls, ElementsAre(Paths{}, Paths{"/r/a/x"}));
}

TEST_F(FileSystemWatcher_Rules, LostEventsAreToldAsAnEmptyListAfterTheSameQuiet) {
    source.deliverLoss();
    simulation.runUntilIdle();
    events({"/r/a/x"});
    simulation.advance(1499ms);
    EXPECT_THAT(calls, IsEmpty());
    simulation.advance(1ms);
    EXPECT_THAT(calls, ElementsAre(Paths{}));
}

TEST_F(FileSystemWatcher_Rules, StormCostsNoMemoryAndOneCall) {
    for (int batch = 0; batch < 100; ++batch) {
        Paths paths;
        for (int each = 0; each < 500; ++each) paths.push_back(numbered(batch * 500 + each));
        events(std::move(paths));
        simulation.advance(500ms);
    }
    EXPECT_THAT(calls, IsEmpty());
    afterQuiet();
    EXPECT_THAT(calls, ElementsAre(Paths{}));
}

TEST_F(FileSystemWatcher_Rules, WatchingOtherFoldersClosesTheStreamAndOpensOne) {
    watch({"/r/a", "/r/b"});
    ASSERT_EQ(source.opened.size(), 2);
    EXPECT_FALSE(*source.opened[0].isOpen);
    EXPECT_TRUE(*source.opened[1].isOpen);
    EXPECT_EQ(source.opened[1].roots, (Paths{"/r/a", "/r/b"}));
    EXPECT_EQ(source.excludes, FileSystemWatcher::defaultExcludes());
}

TEST_F(FileSystemWatcher_Rules, WatchingNothingClosesTheStreamAndOpensNone) {
    watch({});
    EXPECT_EQ(source.opened.size(), 1);
    EXPECT_FALSE(*source.opened[0].isOpen);
}

TEST_F(FileSystemWatcher_Rules, PendingEventsOfTheOldStreamAreDropped) {
    events({"/r/a/x"});
    watch({"/r/b"});
    simulation.advance(1h);
    EXPECT_THAT(calls, IsEmpty());
    events({"/r/b/y"});
    afterQuiet();
    EXPECT_THAT(calls, ElementsAre(Paths{"/r/b/y"}));
}

TEST_F(FileSystemWatcher_Rules, BatchOfAnOldStreamThatArrivesLateIsDropped) {
    const auto late = source.opened[0].deliver;
    watch({"/r/b"});
    late({{"/r/a/x"}});
    simulation.advance(1h);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(FileSystemWatcher_Rules, StopDropsWhatIsPendingAndClosesTheStream) {
    events(manyPaths(300));
    watcher->stop();
    simulation.advance(1h);
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_FALSE(*source.opened[0].isOpen);
}

TEST_F(FileSystemWatcher_Rules, OpeningAtWorkIsToldWhenItsStreamIsNoLongerWanted) {
    const auto isUnwantedAfter = [this](const std::function<void()>& change) {
        bool unwanted = false;
        source.whileOpening = [&] {
            source.whileOpening = nullptr;
            const auto mine = source.opened.back().isUnwanted;
            EXPECT_FALSE(*mine);
            change();
            unwanted = *mine;
        };
        watch({"/r/b"});
        return unwanted;
    };
    EXPECT_TRUE(isUnwantedAfter([this] { watcher->watch({"/r/c"}); }));
    EXPECT_TRUE(isUnwantedAfter([this] { watcher->stop(); }));
    EXPECT_TRUE(isUnwantedAfter([this] { watcher = nullptr; }));
}

TEST_F(FileSystemWatcher_Rules, StreamThatIsUnwantedBeforeItsTurnIsNotOpened) {
    watcher->watch({"/r/b"});
    watcher->watch({"/r/c"});
    simulation.runUntilIdle();
    ASSERT_EQ(source.opened.size(), 2);
    EXPECT_EQ(source.opened[1].roots, Paths{"/r/c"});
}

TEST_F(FileSystemWatcher_Rules, NothingIsToldWhenTheWatcherHasGone) {
    events({"/r/a/x"});
    const auto deliver = source.opened[0].deliver;
    watcher = nullptr;
    simulation.runUntilIdle();
    EXPECT_FALSE(*source.opened[0].isOpen);
    deliver({{"/r/a/y"}});
    simulation.advance(1h);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(FileSystemWatcher_Rules, StreamThatCannotBeOpenedIsReportedAndLogged) {
    source.failure = "Too many open files";
    watch({"/r/b"});
    EXPECT_THAT(reports, ElementsAre("FileSystemWatcher: Failed to create FSEvent stream"));
    EXPECT_THAT(observed.lines,
                ElementsAre("FSEVENT stream could not be opened: Too many open files"));
}

TEST_F(FileSystemWatcher_Rules, WatchingGoesOnAfterAStreamThatCouldNotBeOpened) {
    source.failure = "Too many open files";
    watch({"/r/b"});
    source.failure.reset();
    watch({"/r/c"});
    events({"/r/c/x"});
    afterQuiet();
    EXPECT_THAT(calls, ElementsAre(Paths{"/r/c/x"}));
}

TEST_F(FileSystemWatcher_Rules, WordsOfTheSourceGoToTheScanLog) {
    source.opened[0].report("FSEVENT watch limit reached: 12 more are needed");
    EXPECT_THAT(observed.lines, ElementsAre("FSEVENT watch limit reached: 12 more are needed"));
}

}  // namespace
}  // namespace tarnbeck
