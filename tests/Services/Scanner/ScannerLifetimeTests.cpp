#include <limits>

#include "ScannerHarness.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using testing::ScannerHarness;

TEST(RepositoryScanner_Start, WithAutoStartTheFirstScanBeginsAtOnce) {
    ScannerHarness harness({"/r/a"});
    harness.options.autoStart = true;
    EXPECT_TRUE(harness.make().isScanning());
}

TEST(RepositoryScanner_Start, FirstScanIsFollowedByBothPasses) {
    ScannerHarness harness({"/r/a"});
    harness.options.autoStart = true;
    harness.answersAtOnce = true;
    harness.make();
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 1);
    EXPECT_EQ(harness.scanner->issueScanGeneration(), 1);
}

TEST(RepositoryScanner_Start, PulseBeginsToo) {
    ScannerHarness harness({"/r/a"});
    harness.options.autoStart = true;
    harness.options.configuration.scanIntervalMinutes = 1;
    harness.answersAtOnce = true;
    harness.make();
    harness.simulation.advance(1min);
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST(RepositoryScanner_Start, RefreshComesFirstThenTheWatcherThenBothTimers) {
    ScannerHarness harness;
    harness.options.configuration.repoPaths = {harness.folder.makeFolder("a")};
    harness.options.configuration.scanIntervalMinutes = 5;  // due together with the issues
    harness.options.autoStart = true;
    harness.make();
    // The scan's own work is queued before the watcher's.
    while (harness.scannedPaths.empty()) {
        EXPECT_TRUE(harness.fileEvents.opened.empty());
        ASSERT_TRUE(harness.simulation.queues.runOne() || harness.simulation.loop.runOne());
    }
    harness.answersAtOnce = true;
    harness.answerNext();
    EXPECT_EQ(harness.fileEvents.opened.size(), 1);
    harness.notified.clear();
    harness.simulation.advance(5min);
    ASSERT_GE(harness.notified.size(), 2);
    EXPECT_EQ(harness.notified[0], RepositoryScanner::Property::isScanning);
    EXPECT_EQ(harness.scanner->issueScanGeneration(), 2);
}

TEST(RepositoryScanner_Start, FirstScanFetchesNothing) {
    ScannerHarness harness;
    harness.folder.makeFolder("a/.git");
    harness.options.configuration.repoPaths = {"~/a"};
    harness.options.autoStart = true;
    harness.answersAtOnce = true;
    harness.make();
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.scannedPaths.size(), 1);
    EXPECT_TRUE(harness.gitInvocations.empty());
}

TEST(RepositoryScanner_Start, WithoutAutoStartNothingHappensByItself) {
    ScannerHarness harness({"/r/a"});
    harness.make();
    harness.simulation.advance(24h);
    EXPECT_TRUE(harness.scannedPaths.empty());
    EXPECT_EQ(harness.simulation.loop.pendingTimers(), 0);
}

TEST(RepositoryScanner_PeriodicScan, ComesAfterTheConfiguredMinutesAgainAndAgain) {
    ScannerHarness harness({"/r/a"});
    harness.options.configuration.scanIntervalMinutes = 2;
    harness.answersAtOnce = true;
    harness.make().startPeriodicScan();
    harness.simulation.advance(119s);
    EXPECT_EQ(harness.scannedPaths.size(), 0);
    harness.simulation.advance(1s);
    EXPECT_EQ(harness.scannedPaths.size(), 1);
    harness.simulation.advance(20min);
    EXPECT_EQ(harness.scannedPaths.size(), 11);
}

TEST(RepositoryScanner_PeriodicScan, AsksForDependenciesAlone) {
    ScannerHarness harness({"/r/a"});
    harness.folder.makeFolder(".git");
    harness.options.configuration.repoPaths = {harness.folder.path()};
    harness.options.configuration.scanIntervalMinutes = 1;
    harness.answersAtOnce = true;
    harness.make().startPeriodicScan();
    harness.simulation.advance(1min);
    EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 1);
    EXPECT_EQ(harness.scanner->issueScanGeneration(), 0);
    EXPECT_TRUE(harness.gitInvocations.empty());
}

TEST(RepositoryScanner_PeriodicScan, IntervalBelowOneMeansNoTimer) {
    for (const std::int64_t minutes : {std::int64_t{0}, std::int64_t{-5}}) {
        ScannerHarness harness({"/r/a"});
        harness.options.configuration.scanIntervalMinutes = minutes;
        harness.make().startPeriodicScan();
        EXPECT_EQ(harness.simulation.loop.pendingTimers(), 0);
    }
}

TEST(RepositoryScanner_PeriodicScan, LaterPositiveIntervalTakesEffectOnlyWhenStartedAnew) {
    ScannerHarness harness({"/r/a"});
    harness.options.configuration.scanIntervalMinutes = 0;
    harness.answersAtOnce = true;
    harness.make().startPeriodicScan();
    auto configuration = harness.scanner->configuration();
    configuration.scanIntervalMinutes = 1;
    harness.scanner->setConfiguration(configuration);
    harness.simulation.advance(10min);
    EXPECT_EQ(harness.scannedPaths.size(), 0);
    harness.scanner->startPeriodicScan();
    harness.simulation.advance(1min);
    EXPECT_EQ(harness.scannedPaths.size(), 1);
}

TEST(RepositoryScanner_PeriodicScan, StartingAnewReplacesTheTimer) {
    ScannerHarness harness({"/r/a"});
    harness.make().startPeriodicScan();
    harness.scanner->startPeriodicScan();
    EXPECT_EQ(harness.simulation.loop.pendingTimers(), 1);
}

TEST(RepositoryScanner_PeriodicScan, HugeIntervalNeverComesAndOverflowsNothing) {
    ScannerHarness harness({"/r/a"});
    harness.options.configuration.scanIntervalMinutes = std::numeric_limits<std::int64_t>::max();
    harness.make().startPeriodicScan();
    harness.simulation.advance(24h * 365);
    EXPECT_TRUE(harness.scannedPaths.empty());
}

TEST(RepositoryScanner_Destruction, StopsTheTimer) {
    ScannerHarness harness({"/r/a"});
    harness.make().startPeriodicScan();
    harness.scanner.reset();
    EXPECT_EQ(harness.simulation.loop.pendingTimers(), 0);
}

TEST(RepositoryScanner_Destruction, StopsTheTimerOfTheIssuesAndClosesTheStream) {
    ScannerHarness harness;
    harness.options.configuration.repoPaths = {harness.folder.makeFolder("a")};
    harness.options.autoStart = true;
    harness.answersAtOnce = true;
    harness.make();
    harness.simulation.runUntilIdle();
    ASSERT_TRUE(*harness.fileEvents.opened.back().isOpen);
    harness.scanner = nullptr;
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.simulation.loop.pendingTimers(), 0);
    EXPECT_FALSE(*harness.fileEvents.opened.back().isOpen);
}

TEST(RepositoryScanner_Destruction, DuringAScanNoFurtherRepositoryIsScanned) {
    ScannerHarness harness({"/r/a", "/r/b"});
    harness.make().requestRefresh({});
    harness.simulation.runUntilIdle();
    harness.scanner.reset();
    harness.answerNext();
    harness.simulation.advance(10s);
    EXPECT_EQ(harness.scannedPaths.size(), 1);
}

TEST(RepositoryScanner_Destruction, ResultThatIsOnItsWayFindsNobody) {
    ScannerHarness harness({"/r/a"});
    harness.make().requestRefresh({});
    harness.simulation.runUntilIdle();
    harness.waiting.front().second(testing::repositoryAt("/r/a"));
    harness.waiting.clear();
    harness.scanner.reset();
    harness.simulation.advance(10s);
    EXPECT_EQ(harness.notified, (std::vector{RepositoryScanner::Property::isScanning}));
}

TEST(RepositoryScanner_Destruction, FollowUpThatWaitsDoesNotCome) {
    ScannerHarness harness({"/r/a"});
    harness.make().requestRefresh({});
    harness.simulation.runUntilIdle();
    harness.scanner->requestRefresh({});
    harness.answerNext();
    harness.scanner.reset();
    harness.simulation.advance(10s);
    EXPECT_EQ(harness.scannedPaths.size(), 1);
}

TEST(RepositoryScanner_Paths, RepeatedPathsAreDroppedWhereTheyEnter) {
    ScannerHarness harness;
    const std::string home = harness.folder.path();
    harness.options.configuration.repoPaths = {"~/a", home + "/a", home + "/a/", "~/b"};
    harness.make();
    EXPECT_EQ(harness.scanner->configuration().repoPaths, (std::vector<std::string>{"~/a", "~/b"}));
    auto configuration = harness.scanner->configuration();
    configuration.repoPaths = {home + "/c", "~/c"};
    harness.scanner->setConfiguration(configuration);
    EXPECT_EQ(harness.scanner->configuration().repoPaths, (std::vector{home + "/c"}));
}

TEST(RepositoryScanner_PathsDeathTest, RepeatedPathAmongTheScannedEndsTheProcess) {
    ScannerHarness harness({"/r/a", "/r/b"});
    harness.answer = [](const std::string&) { return testing::repositoryAt("/r/same"); };
    harness.make();
    EXPECT_DEATH(harness.refresh(), "Duplicate values for key: '/r/same'");
}

TEST(RepositoryScanner_Observers, TokenThatIsGoneHearsNothing) {
    ScannerHarness harness({"/r/a"});
    harness.make();
    harness.observation.reset();
    harness.refresh();
    EXPECT_TRUE(harness.notified.empty());
}

TEST(RepositoryScanner_Observers, AreToldOfConfigurationsAndSnapshotsThatComeFromOutside) {
    using Property = RepositoryScanner::Property;
    ScannerHarness harness;
    harness.make().setConfiguration({});
    harness.scanner->setRepositories({});
    EXPECT_EQ(harness.notified, (std::vector{Property::configuration, Property::repositories}));
}

TEST(RepositoryScanner_State, InitialValuesAreEmptyAndFalse) {
    ScannerHarness harness;
    const auto& state = harness.make().state();
    EXPECT_TRUE(state.repositories.empty());
    EXPECT_FALSE(state.isScanning || state.dependencyScanInProgress || state.issueScanInProgress);
    EXPECT_EQ(state.dependencyScanCompletedCount, 0);
    EXPECT_EQ(state.dependencyScanTotalCount, 0);
    EXPECT_FALSE(state.lastScan.has_value() || state.lastIssueRefresh.has_value());
    EXPECT_TRUE(state.issueScanInProgressForRepo.empty());
    EXPECT_TRUE(state.dependencyScanInProgressForRepo.empty());
    EXPECT_TRUE(state.gitScanInProgressForRepo.empty());
    EXPECT_EQ(state.configuration, AppConfiguration{});
}

}  // namespace
}  // namespace tarnbeck
