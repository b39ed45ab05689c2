#include <chrono>

#include <fmt/format.h>

#include "ScannerHarness.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::repositoryAt;
using testing::ScannerHarness;
using Paths = std::vector<std::string>;

// A started scanner over real folders, whose first scan has ended long ago.
class FileSystemRefresh : public ::testing::Test {
  protected:
    FileSystemRefresh() {
        harness.options.autoStart = true;
        harness.options.configuration.scanIntervalMinutes = 0;
        harness.options.issueRefreshInterval = 0s;
        harness.answersAtOnce = true;
    }

    void start(const Paths& names) {
        for (const std::string& name : names) {
            harness.options.configuration.repoPaths.push_back(harness.folder.makeFolder(name));
        }
        harness.make();
        harness.simulation.advance(1min);
        harness.forget();
    }

    std::string at(const std::string& name) { return harness.folder / name; }

    void changed(Paths paths) {
        harness.scanner->requestFileSystemRefresh(std::move(paths));
        harness.simulation.runUntilIdle();
    }
    void events(Paths paths) {
        harness.fileEvents.deliver(std::move(paths));
        harness.simulation.advance(1500ms);
    }

    ScannerHarness harness;
};

TEST_F(FileSystemRefresh, ChangeRefreshesItsRepositoryAlone) {
    start({"a", "b"});
    events({at("a/file.txt")});
    EXPECT_EQ(harness.scannedPaths, Paths{at("a")});
    EXPECT_FALSE(harness.scanner->isScanning());
}

TEST_F(FileSystemRefresh, ChangeOfHeadReachesTheScannerAndIndexLockDoesNot) {
    start({"a", "b"});
    events({at("a/.git/index.lock")});
    EXPECT_THAT(harness.scannedPaths, IsEmpty());
    events({at("b/.git/HEAD")});
    EXPECT_EQ(harness.scannedPaths, Paths{at("b")});
}

TEST_F(FileSystemRefresh, FourRepositoriesAreRefreshedOneByOneInSortedOrder) {
    start({"d", "c", "b", "a", "e"});
    changed({at("d/x"), at("a/x"), at("c/x"), at("b/x")});
    EXPECT_EQ(harness.scannedPaths, (Paths{at("a"), at("b"), at("c"), at("d")}));
}

TEST_F(FileSystemRefresh, FiveRepositoriesAtOnceCauseAFullScanNotFiveTargetedOnes) {
    start({"a", "b", "c", "d", "e", "f"});
    changed({at("a/x"), at("b/x"), at("c/x"), at("d/x"), at("e/x")});
    EXPECT_EQ(harness.scannedPaths.size(), 6);
    EXPECT_THAT(harness.linesOf("FSEVENT"), IsEmpty());
}

TEST_F(FileSystemRefresh, ScopedRefreshIsLoggedWithItsRepositoriesAndTheFirstFourPaths) {
    start({"b", "a"});
    changed({at("b/6"), at("b/5"), at("b/4"), at("a/3"), at("a/2"), at("a/1")});
    EXPECT_EQ(harness.linesOf("FSEVENT"),
              Paths{fmt::format("FSEVENT scoped refresh repos={},{} paths[6]={},{},{},{}", at("a"),
                                at("b"), at("a/1"), at("a/2"), at("a/3"), at("b/4"))});
}

TEST_F(FileSystemRefresh, EmptyPathListForcesAFullScan) {
    start({"a", "b"});
    changed({});
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(FileSystemRefresh, EmptyPathListForcesTheFullScanAtTheNextAllowedMoment) {
    start({"a", "b"});
    changed({at("a/x")});
    harness.forget();
    changed({});
    harness.simulation.advance(4999ms);
    EXPECT_THAT(harness.scannedPaths, IsEmpty());
    harness.simulation.advance(1ms);
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(FileSystemRefresh, FullScanByEventsAsksForNothingElse) {
    start({"a"});
    changed({});
    EXPECT_THAT(harness.issueScans, IsEmpty());
    EXPECT_THAT(harness.gitInvocations, IsEmpty());
    EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 1);  // that of the start
}

TEST_F(FileSystemRefresh, SecondChangeWaitsForTheMinimumInterval) {
    start({"a"});
    changed({at("a/x")});
    harness.forget();
    harness.simulation.advance(2s);
    changed({at("a/y")});
    harness.simulation.advance(2999ms);
    EXPECT_THAT(harness.scannedPaths, IsEmpty());
    harness.simulation.advance(1ms);
    EXPECT_EQ(harness.scannedPaths, Paths{at("a")});
}

TEST_F(FileSystemRefresh, ChangesThatWaitTogetherAreServedTogether) {
    start({"a", "b"});
    changed({at("a/x")});
    harness.forget();
    changed({at("a/y")});
    changed({at("b/y")});
    harness.simulation.advance(5s);
    EXPECT_EQ(harness.scannedPaths, (Paths{at("a"), at("b")}));
    EXPECT_EQ(harness.linesOf("FSEVENT").size(), 1);
}

TEST_F(FileSystemRefresh, ChangeAfterTheMinimumIntervalIsServedAtOnce) {
    start({"a"});
    changed({at("a/x")});
    harness.simulation.advance(5s);
    harness.forget();
    changed({at("a/y")});
    EXPECT_EQ(harness.scannedPaths, Paths{at("a")});
}

TEST_F(FileSystemRefresh, FullScanBeginsTheMinimumIntervalToo) {
    start({"a"});
    harness.refresh();
    harness.forget();
    changed({at("a/x")});
    EXPECT_THAT(harness.scannedPaths, IsEmpty());
    harness.simulation.advance(5s);
    EXPECT_EQ(harness.scannedPaths, Paths{at("a")});
}

TEST_F(FileSystemRefresh, ClockThatJumpedBackMakesTheIntervalCountAsPassed) {
    start({"a"});
    changed({at("a/x")});
    harness.forget();
    harness.simulation.loop.setWallTime(harness.simulation.loop.wallNow() - 24h);
    changed({at("a/y")});
    EXPECT_EQ(harness.scannedPaths, Paths{at("a")});
}

TEST_F(FileSystemRefresh, FirstEventAfterStartBeforeAnyScanHasFinishedIsHandledAtOnce) {
    harness.answersAtOnce = false;
    harness.options.configuration.repoPaths = {harness.folder.makeFolder("a")};
    harness.make();
    harness.simulation.runUntilIdle();
    const std::size_t timers = harness.simulation.loop.pendingTimers();
    changed({at("a/x")});
    // Nothing waits for a moment to come: the request stands behind the scan that runs.
    EXPECT_EQ(harness.simulation.loop.pendingTimers(), timers);
    harness.answerNext();
    harness.simulation.advance(300ms);
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(FileSystemRefresh, WithoutAnyRefreshBeforeAnEventIsHandledAtOnce) {
    harness.options.autoStart = false;
    harness.options.configuration.repoPaths = {harness.folder.makeFolder("a")};
    harness.make();
    harness.scanner->setRepositories(
        {std::make_shared<const GitRepository>(repositoryAt(at("a")))});
    harness.scanner->refreshFileWatchingPaths(false);
    changed({at("a/x")});
    EXPECT_EQ(harness.scannedPaths, Paths{at("a")});
    EXPECT_EQ(harness.linesOf("FSEVENT").size(), 1);
}

TEST_F(FileSystemRefresh, EventsThatTheSourceLostCauseAFullScan) {
    start({"a", "b"});
    harness.fileEvents.deliverLoss();
    harness.simulation.advance(1500ms);
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(FileSystemRefresh, MorePathsThanTheWatcherKeepsCauseAFullScan) {
    start({"a", "b"});
    Paths paths;
    for (int number = 0; number < 257; ++number) paths.push_back(at(fmt::format("a/{}", number)));
    events(paths);
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(FileSystemRefresh, WaitingRefreshIsReplacedByTheNextOne) {
    start({"a"});
    changed({at("a/x")});
    changed({at("a/y")});
    changed({at("a/z")});
    EXPECT_EQ(harness.simulation.loop.pendingTimers(), 1);
}

TEST_F(FileSystemRefresh, EventDuringAFullScanEndsInAQueuedRequest300MillisecondsAfterIt) {
    start({"a"});
    harness.answersAtOnce = false;
    harness.scanner->requestRefresh({});
    harness.simulation.advance(10s);
    changed({at("a/x")});
    EXPECT_EQ(harness.scannedPaths.size(), 1);
    harness.answerNext();
    EXPECT_FALSE(harness.scanner->isScanning());
    harness.simulation.advance(299ms);
    EXPECT_FALSE(harness.scanner->isScanning());
    harness.simulation.advance(1ms);
    EXPECT_TRUE(harness.scanner->isScanning());
}

TEST_F(FileSystemRefresh, FullScanCoversTheChangesThatWait) {
    start({"a"});
    changed({at("a/x")});
    changed({at("a/y")});
    harness.refresh();
    harness.forget();
    harness.simulation.advance(1h);
    EXPECT_THAT(harness.scannedPaths, IsEmpty());
    EXPECT_EQ(harness.simulation.loop.pendingTimers(), 0);
}

TEST_F(FileSystemRefresh, FiveHundredAndTwelveWaitingPathsAreStillScoped) {
    start({"a", "b"});
    changed({at("a/x")});
    harness.forget();
    Paths paths;
    for (int number = 0; number < 512; ++number) paths.push_back(at(fmt::format("a/{}", number)));
    changed(paths);
    harness.simulation.advance(5s);
    EXPECT_EQ(harness.scannedPaths, Paths{at("a")});
}

TEST_F(FileSystemRefresh, MoreWaitingPathsThanThatBecomeAFullScan) {
    start({"a", "b"});
    changed({at("a/x")});
    harness.forget();
    for (int number = 0; number < 513; ++number) changed({at(fmt::format("a/{}", number))});
    harness.simulation.advance(5s);
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(FileSystemRefresh, EventInAConfiguredRootWithoutEntryLeadsToAFullScan) {
    start({"a", "b"});
    harness.scanner->setRepositories(
        {std::make_shared<const GitRepository>(repositoryAt(at("a")))});
    changed({at("b/x")});
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(FileSystemRefresh, EventOutsideEveryRootLeadsToAFullScan) {
    start({"a", "b"});
    changed({at("a/x"), "/elsewhere/x"});
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(FileSystemRefresh, EventInALinkedWorktreeRefreshesTheMainRepository) {
    const std::string tree = harness.folder.makeFolder("tree");
    harness.answer = [&](const std::string& path) {
        GitRepository repository = repositoryAt(path);
        repository.worktrees = {{.path = path, .isMainWorktree = true}, {.path = tree}};
        return repository;
    };
    start({"a"});
    EXPECT_EQ(harness.fileEvents.opened.back().roots, (Paths{at("a"), tree}));
    events({tree + "/x"});
    EXPECT_EQ(harness.scannedPaths, Paths{at("a")});
}

TEST_F(FileSystemRefresh, WorktreeThatAppearsInATargetedRefreshIsWatchedFromThenOn) {
    start({"a"});
    const std::string tree = harness.folder.makeFolder("tree");
    harness.answer = [&](const std::string& path) {
        GitRepository repository = repositoryAt(path);
        repository.worktrees = {{.path = tree}};
        return repository;
    };
    events({at("a/.git/worktrees/tree/HEAD")});
    EXPECT_EQ(harness.fileEvents.opened.back().roots, (Paths{at("a"), tree}));
}

TEST_F(FileSystemRefresh, OneLookAtEverythingMakesUpForAStreamThatWasChanged) {
    start({"a", "b"});
    const std::string tree = harness.folder.makeFolder("tree");
    harness.answer = [&](const std::string& path) {
        GitRepository repository = repositoryAt(path);
        repository.worktrees = {{.path = tree}};
        return repository;
    };
    events({at("a/x")});
    harness.forget();
    harness.simulation.advance(5s);
    EXPECT_EQ(harness.scannedPaths, (Paths{at("a"), at("b")}));
    harness.simulation.advance(1h);
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(FileSystemRefresh, UnchangedFoldersKeepTheirStream) {
    start({"a"});
    const std::size_t before = harness.fileEvents.opened.size();
    harness.refresh();
    changed({at("a/x")});
    EXPECT_EQ(harness.fileEvents.opened.size(), before);
}

TEST_F(FileSystemRefresh, ForcedRefreshOfTheFoldersOpensANewStream) {
    start({"a"});
    const std::size_t before = harness.fileEvents.opened.size();
    harness.scanner->refreshFileWatchingPaths(true);
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.fileEvents.opened.size(), before + 1);
}

TEST_F(FileSystemRefresh, WatcherStandsBeforeTheFirstScanHasEnded) {
    harness.answersAtOnce = false;
    harness.options.configuration.repoPaths = {harness.folder.makeFolder("a")};
    harness.make();
    harness.simulation.runUntilIdle();
    EXPECT_TRUE(harness.scanner->isScanning());
    ASSERT_EQ(harness.fileEvents.opened.size(), 1);
    EXPECT_EQ(harness.fileEvents.opened[0].roots, Paths{at("a")});
}

TEST_F(FileSystemRefresh, WithoutAutoStartNothingIsWatched) {
    harness.options.autoStart = false;
    start({"a"});
    harness.refresh();
    EXPECT_THAT(harness.fileEvents.opened, IsEmpty());
}

TEST_F(FileSystemRefresh, StreamThatCannotBeOpenedIsReportedAndTimersGoOn) {
    harness.options.configuration.scanIntervalMinutes = 1;
    harness.fileEvents.failure = "Too many open files";
    start({"a"});
    EXPECT_EQ(harness.reports, Paths{"FileSystemWatcher: Failed to create FSEvent stream"});
    harness.simulation.advance(1min);
    EXPECT_EQ(harness.scannedPaths.size(), 1);
}

TEST_F(FileSystemRefresh, QuietStretchBringsNoTimerOfItsOwn) {
    start({"a"});
    events({at("a/x")});
    harness.simulation.advance(1min);
    EXPECT_EQ(harness.simulation.loop.pendingTimers(), 0);
}

TEST_F(FileSystemRefresh, DelayedRefreshDoesNothingWhenTheScannerHasGone) {
    start({"a"});
    changed({at("a/x")});
    changed({at("a/y")});
    harness.forget();
    harness.scanner = nullptr;
    harness.simulation.advance(1h);
    EXPECT_THAT(harness.scannedPaths, IsEmpty());
}

}  // namespace
}  // namespace tarnbeck
