#include <chrono>

#include "ScannerHarness.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using testing::repositoryAt;
using testing::ScannerHarness;
using Policy = GitHubIssueRefreshPolicy;

class PeriodicIssueRefresh : public ::testing::Test {
  protected:
    PeriodicIssueRefresh() {
        harness.options.configuration.repoPaths = {"/r/a"};
        harness.options.configuration.scanIntervalMinutes = 0;
    }
    ScannerHarness harness;
};

TEST_F(PeriodicIssueRefresh, ComesEveryFiveMinutesPastTheCache) {
    harness.makeShowing({repositoryAt("/r/a")}).startPeriodicIssueRefresh();
    harness.simulation.advance(299s);
    EXPECT_THAT(harness.issueScans, IsEmpty());
    harness.simulation.advance(1s);
    EXPECT_THAT(harness.issueScans, ElementsAre(Pair("/r/a", Policy::forceRefresh)));
    harness.simulation.advance(300s);
    EXPECT_EQ(harness.issueScans.size(), 2);
}

TEST_F(PeriodicIssueRefresh, BeginsWithTheScanner) {
    harness.options.autoStart = true;
    harness.answersAtOnce = true;
    harness.make();
    harness.simulation.runUntilIdle();
    harness.forget();
    harness.simulation.advance(300s);
    EXPECT_THAT(harness.issueScans, ElementsAre(Pair("/r/a", Policy::forceRefresh)));
}

TEST_F(PeriodicIssueRefresh, IsAbsentWhereIssuesAreNotShown) {
    harness.options.configuration.showIssues = false;
    harness.makeShowing({repositoryAt("/r/a")}).startPeriodicIssueRefresh();
    EXPECT_EQ(harness.simulation.loop.pendingTimers(), 0);
}

TEST_F(PeriodicIssueRefresh, IsAbsentWithAnIntervalOfZero) {
    harness.options.issueRefreshInterval = 0s;
    harness.makeShowing({repositoryAt("/r/a")}).startPeriodicIssueRefresh();
    EXPECT_EQ(harness.simulation.loop.pendingTimers(), 0);
}

TEST_F(PeriodicIssueRefresh, EndsWhenIssuesAreNoLongerShown) {
    RepositoryScanner& scanner = harness.makeShowing({repositoryAt("/r/a")});
    scanner.startPeriodicIssueRefresh();
    AppConfiguration changed = scanner.configuration();
    changed.showIssues = false;
    scanner.setConfiguration(changed);
    scanner.refreshIssueMonitoring();
    harness.simulation.advance(1h);
    EXPECT_THAT(harness.issueScans, IsEmpty());
    EXPECT_EQ(harness.simulation.loop.pendingTimers(), 0);
}

TEST_F(PeriodicIssueRefresh, ChangedMonitoringAsksAtOnceWithTheCacheAndStartsTheTimer) {
    harness.makeShowing({repositoryAt("/r/a")}).refreshIssueMonitoring();
    harness.simulation.runUntilIdle();
    EXPECT_THAT(harness.issueScans, ElementsAre(Pair("/r/a", Policy::useCache)));
    harness.simulation.advance(300s);
    EXPECT_EQ(harness.issueScans.size(), 2);
}

TEST_F(PeriodicIssueRefresh, StartedAnewItBeginsItsIntervalAnew) {
    RepositoryScanner& scanner = harness.makeShowing({repositoryAt("/r/a")});
    scanner.startPeriodicIssueRefresh();
    harness.simulation.advance(200s);
    scanner.startPeriodicIssueRefresh();
    harness.simulation.advance(299s);
    EXPECT_THAT(harness.issueScans, IsEmpty());
    harness.simulation.advance(1s);
    EXPECT_EQ(harness.issueScans.size(), 1);
}

}  // namespace
}  // namespace tarnbeck
