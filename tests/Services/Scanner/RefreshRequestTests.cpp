#include "RepositoryRefreshRequest.h"
#include "ScannerHarness.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using testing::ScannerHarness;
using Trigger = RepositoryRefreshTrigger;

std::optional<RepositoryRefreshRequest> mergedOf(
    const std::vector<RepositoryRefreshRequest>& requests) {
    std::optional<RepositoryRefreshRequest> merged;
    for (const auto& request : requests) merged = merged ? merged->mergedWith(request) : request;
    return merged;
}

TEST(RepositoryRefreshTrigger_Order, CasesStandInTheirDeclaredOrder) {
    std::vector<std::string_view> names;
    for (const auto& [trigger, name] : rawValues(Trigger{})) names.push_back(name);
    EXPECT_EQ(names,
              (std::vector<std::string_view>{"initial", "fileSystemEvent", "manual", "periodic"}));
}

TEST(RepositoryRefreshTrigger_Rank, ManualBeforeInitialBeforePeriodicBeforeFileSystemEvent) {
    EXPECT_EQ(rankOf(Trigger::manual), 3);
    EXPECT_EQ(rankOf(Trigger::initial), 2);
    EXPECT_EQ(rankOf(Trigger::periodic), 1);
    EXPECT_EQ(rankOf(Trigger::fileSystemEvent), 0);
}

TEST(RepositoryRefreshRequest_Merging, EachFlagIsSetWhenEitherHasIt) {
    const RepositoryRefreshRequest all{.refreshDependencies = true,
                                       .refreshIssues = true,
                                       .forceIssueRefresh = true,
                                       .refreshRemotes = true};
    EXPECT_EQ(RepositoryRefreshRequest{}.mergedWith(all), all);
    EXPECT_EQ(all.mergedWith(RepositoryRefreshRequest{}), all);
    EXPECT_EQ(
        (RepositoryRefreshRequest{.refreshIssues = true}.mergedWith({.refreshRemotes = true})),
        (RepositoryRefreshRequest{.refreshIssues = true, .refreshRemotes = true}));
}

TEST(RepositoryRefreshRequest_Merging, TriggerOfStrictlyHigherRankReplacesTheQueuedOne) {
    EXPECT_EQ(mergedOf({{.trigger = Trigger::periodic}, {.trigger = Trigger::manual}})->trigger,
              Trigger::manual);
    EXPECT_EQ(mergedOf({{.trigger = Trigger::initial}, {.trigger = Trigger::periodic}})->trigger,
              Trigger::initial);
}

TEST(RepositoryRefreshRequest_Merging, HighestRankedTriggerOfFiveWinsAndOfEqualsTheEarliest) {
    const auto merged = mergedOf({{.trigger = Trigger::fileSystemEvent},
                                  {.trigger = Trigger::periodic},
                                  {.trigger = Trigger::initial, .refreshIssues = true},
                                  {.trigger = Trigger::initial, .refreshRemotes = true},
                                  {.trigger = Trigger::fileSystemEvent}});
    EXPECT_EQ(merged->trigger, Trigger::initial);
    EXPECT_TRUE(merged->refreshIssues);
    EXPECT_TRUE(merged->refreshRemotes);
}

TEST(RepositoryRefreshRequest_Named, StartAsksForDependenciesAndForcedIssuesWithoutRemotes) {
    EXPECT_EQ(RepositoryRefreshRequest::atStart(),
              (RepositoryRefreshRequest{.trigger = Trigger::initial,
                                        .refreshDependencies = true,
                                        .refreshIssues = true,
                                        .forceIssueRefresh = true}));
}

TEST(RepositoryRefreshRequest_Named, PeriodicTimerAsksForDependenciesAlone) {
    EXPECT_EQ(
        RepositoryRefreshRequest::periodic(),
        (RepositoryRefreshRequest{.trigger = Trigger::periodic, .refreshDependencies = true}));
}

// A scanner in the middle of a scan of one repository.
class DuringAScan : public ::testing::Test {
  protected:
    DuringAScan() {
        harness.options.configuration.repoPaths = {"/r/one"};
        harness.make();
        harness.scanner->requestRefresh({.trigger = Trigger::manual});
        harness.simulation.runUntilIdle();
    }

    ScannerHarness harness;
};

TEST_F(DuringAScan, RequestsStartNoSecondScan) {
    harness.scanner->requestRefresh({.trigger = Trigger::manual});
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.waiting.size(), 1);
}

TEST_F(DuringAScan, FiveRequestsLeadToOneFurtherScan) {
    for (int count = 0; count < 5; ++count) harness.scanner->requestRefresh({});
    harness.answerNext();
    harness.simulation.advance(10s);
    EXPECT_EQ(harness.waiting.size(), 1);
    harness.answerNext();
    harness.simulation.advance(10s);
    EXPECT_TRUE(harness.waiting.empty());
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(DuringAScan, OneOfFiveWithRemotesMakesTheFurtherScanFetch) {
    harness.folder.makeFolder("one/.git");
    auto configuration = harness.scanner->configuration();
    configuration.repoPaths = {harness.folder / "one"};
    harness.scanner->setConfiguration(configuration);
    for (int count = 0; count < 5; ++count) {
        harness.scanner->requestRefresh({.refreshRemotes = count == 2});
    }
    harness.answerNext();
    EXPECT_TRUE(harness.gitInvocations.empty());
    harness.simulation.advance(300ms);
    ASSERT_EQ(harness.gitInvocations.size(), 1);
    EXPECT_EQ(harness.gitInvocations[0].logicalArgs,
              (std::vector<std::string>{"fetch", "--prune", "--quiet"}));
}

TEST_F(DuringAScan, FurtherScanBegins300MillisecondsAfterTheFirstHasFinished) {
    harness.scanner->requestRefresh({});
    harness.simulation.advance(5s);
    harness.answerNext();
    EXPECT_FALSE(harness.scanner->isScanning());
    harness.simulation.advance(299ms);
    EXPECT_FALSE(harness.scanner->isScanning());
    harness.simulation.advance(1ms);
    EXPECT_TRUE(harness.scanner->isScanning());
}

TEST_F(DuringAScan, WithoutRequestsNoFurtherScanComes) {
    harness.answerNext();
    harness.simulation.advance(10s);
    EXPECT_FALSE(harness.scanner->isScanning());
    EXPECT_EQ(harness.scannedPaths.size(), 1);
}

TEST_F(DuringAScan, UnionOfDemandsReachesThePassesOfTheFurtherScan) {
    harness.scanner->requestRefresh({.refreshDependencies = true});
    harness.scanner->requestRefresh({.refreshIssues = true});
    harness.answerNext();
    EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 0);
    EXPECT_EQ(harness.scanner->issueScanGeneration(), 0);
    harness.simulation.advance(300ms);
    harness.answerNext();
    EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 1);
    EXPECT_EQ(harness.scanner->issueScanGeneration(), 1);
}

TEST_F(DuringAScan, RequestOfAnObserverThatHearsOfTheEndLosesNoQueuedOne) {
    harness.scanner->requestRefresh({.refreshIssues = true});
    bool asked = false;
    const auto token = harness.scanner->observe([&](RepositoryScanner::Property property) {
        if (property != RepositoryScanner::Property::isScanning || asked) return;
        asked = true;
        harness.scanner->requestRefresh({.trigger = Trigger::manual});
    });
    harness.answerNext();  // the observer's scan begins at once
    harness.answersAtOnce = true;
    harness.answerNext();
    harness.simulation.advance(1s);
    EXPECT_EQ(harness.scanner->issueScanGeneration(), 1);
    EXPECT_EQ(harness.scannedPaths.size(), 3);
}

TEST_F(DuringAScan, RequestBetweenTheEndAndTheFurtherScanMergesNothingAway) {
    harness.scanner->requestRefresh({.refreshIssues = true});
    harness.answerNext();
    harness.simulation.advance(100ms);
    harness.scanner->requestRefresh({.trigger = Trigger::manual});
    harness.simulation.advance(200ms);  // the queued one finds a scan running, and waits again
    harness.answersAtOnce = true;
    harness.answerNext();
    harness.simulation.advance(300ms);
    EXPECT_EQ(harness.scanner->issueScanGeneration(), 1);
}

}  // namespace
}  // namespace tarnbeck
