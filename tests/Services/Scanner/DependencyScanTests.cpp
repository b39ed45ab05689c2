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
using testing::verdict;
using Property = RepositoryScanner::Property;

constexpr auto checking = DependencyHealth::checking;
constexpr auto upToDate = DependencyHealth::upToDate;
constexpr auto updatesAvailable = DependencyHealth::updatesAvailable;

GitRepository withVerdict(const std::string& path, DependencyHealth health) {
    GitRepository repository = repositoryAt(path);
    repository.dependencySummary = verdict(health);
    return repository;
}

class DependencyPass : public ::testing::Test {
  protected:
    DependencyPass() {
        harness.answerOfDependencies = [](const std::string&) { return verdict(upToDate); };
    }
    // A scanner of these repositories, each with one project that has not been checked yet.
    void showUnchecked(std::vector<std::string> paths) {
        harness.options.configuration.repoPaths = std::move(paths);
        harness.answer = [](const std::string& path) { return withVerdict(path, checking); };
        harness.make();
    }
    void pass() { harness.refresh({.refreshDependencies = true}); }
    const RepositoryScanner::State& state() { return harness.scanner->state(); }
    DependencyHealth health(std::size_t index) {
        return harness.repository(index).dependencySummary.ecosystems[0].status;
    }
    // Lets the main thread do what waits there, while a check is under way in the background.
    void runMainThread() {
        while (harness.simulation.loop.runOne()) {
        }
    }
    // Does `action` once, while the first check of the path is under way.
    void during(const std::string& path, std::function<void()> action) {
        harness.answerOfDependencies = [this, path, action](const std::string& asked) {
            if (asked == path && !std::exchange(interrupted_, true)) {
                action();
                runMainThread();
            }
            return verdict(upToDate);
        };
    }

    ScannerHarness harness;

  private:
    bool interrupted_ = false;
};

TEST_F(DependencyPass, FollowsAFullScanThatAsksForItOneRepositoryAfterTheOther) {
    showUnchecked({"/r/b", "/r/a"});
    pass();
    EXPECT_THAT(harness.dependencyScans, ElementsAre(Pair("/r/a", false), Pair("/r/b", false)));
    EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 1);
}

TEST_F(DependencyPass, DoesNotFollowAFullScanThatDoesNotAskForIt) {
    showUnchecked({"/r/a"});
    harness.refresh({.refreshDependencies = false});
    EXPECT_THAT(harness.dependencyScans, IsEmpty());
    EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 0);
}

TEST_F(DependencyPass, LeavesOutRepositoriesWithoutProjects) {
    showUnchecked({"/r/a", "/r/b", "/r/c"});
    harness.answer = [](const std::string& path) {
        return path == "/r/b" ? withVerdict(path, checking) : repositoryAt(path);
    };
    pass();
    EXPECT_THAT(harness.dependencyScans, ElementsAre(Pair("/r/b", false)));
    EXPECT_EQ(state().dependencyScanTotalCount, 1);
}

TEST_F(DependencyPass, WithNothingToCheckIsOverAtOnceWithCountsOfZero) {
    showUnchecked({"/r/a"});
    pass();
    ASSERT_EQ(state().dependencyScanTotalCount, 1);
    harness.forget();
    harness.scanner->setRepositories({});
    harness.options.configuration.repoPaths = {};
    harness.scanner->setConfiguration(harness.options.configuration);
    pass();
    EXPECT_FALSE(state().dependencyScanInProgress);
    EXPECT_EQ(state().dependencyScanCompletedCount, 0);
    EXPECT_EQ(state().dependencyScanTotalCount, 0);
    EXPECT_THAT(harness.dependencyScans, IsEmpty());
}

TEST_F(DependencyPass, StoresEachVerdictBeforeTheNextRepositoryIsChecked) {
    showUnchecked({"/r/a", "/r/b"});
    harness.answerOfDependencies = [this](const std::string& path) {
        if (path == "/r/b") {
            EXPECT_EQ(health(0), updatesAvailable);
            EXPECT_EQ(state().dependencyScanCompletedCount, 1);
        }
        return verdict(updatesAvailable);
    };
    pass();
    EXPECT_EQ(health(1), updatesAvailable);
}

TEST_F(DependencyPass, CountsWhatItHasDoneAndIsInProgressUntilTheEnd) {
    showUnchecked({"/r/a", "/r/b"});
    std::vector<std::int64_t> counts;
    harness.answerOfDependencies = [&](const std::string&) {
        EXPECT_TRUE(state().dependencyScanInProgress);
        EXPECT_EQ(state().dependencyScanTotalCount, 2);
        counts.push_back(state().dependencyScanCompletedCount);
        return verdict(upToDate);
    };
    pass();
    EXPECT_THAT(counts, ElementsAre(0, 1));
    EXPECT_EQ(state().dependencyScanCompletedCount, 2);
    EXPECT_EQ(state().dependencyScanTotalCount, 2);
    EXPECT_FALSE(state().dependencyScanInProgress);
}

TEST_F(DependencyPass, MarksTheRepositoryThatIsBeingCheckedAndNoOther) {
    showUnchecked({"/r/a", "/r/b"});
    harness.answerOfDependencies = [this](const std::string& path) {
        EXPECT_THAT(state().dependencyScanInProgressForRepo, ElementsAre(Pair(path, true)));
        return verdict(upToDate);
    };
    pass();
    EXPECT_THAT(state().dependencyScanInProgressForRepo, IsEmpty());
}

TEST_F(DependencyPass, StoresAFailedVerdictLikeAnyOther) {
    showUnchecked({"/r/a"});
    harness.answerOfDependencies = [](const std::string&) {
        return verdict(DependencyHealth::error);
    };
    pass();
    EXPECT_EQ(health(0), DependencyHealth::error);
}

TEST_F(DependencyPass, StoresAnEqualVerdictAgain) {
    showUnchecked({"/r/a"});
    pass();
    const auto told = harness.timesNotified(Property::repositories);
    pass();
    // Once for the full scan, once for the verdict.
    EXPECT_EQ(harness.timesNotified(Property::repositories), told + 2);
}

TEST_F(DependencyPass, DropsTheVerdictOnARepositoryThatWasRemovedMeanwhile) {
    showUnchecked({"/r/a", "/r/b"});
    during("/r/a", [this] { harness.scanner->setRepositories({}); });
    pass();
    EXPECT_THAT(harness.names(), IsEmpty());
    EXPECT_THAT(state().dependencyScanInProgressForRepo, IsEmpty());
    EXPECT_FALSE(state().dependencyScanInProgress);
    EXPECT_EQ(state().dependencyScanCompletedCount, 0);
}

TEST_F(DependencyPass, PeriodicScanSupersedesOneThatIsStillRunning) {
    showUnchecked({"/r/a", "/r/b", "/r/c"});
    harness.options.configuration.scanIntervalMinutes = 5;
    harness.make();
    harness.scanner->startPeriodicScan();
    bool interrupted = false;
    bool staleVerdictShown = false;
    const auto observation = harness.scanner->observe([&](Property property) {
        if (property != Property::repositories || harness.names().size() < 2) return;
        staleVerdictShown = staleVerdictShown || health(1) == updatesAvailable;
    });
    harness.answerOfDependencies = [&](const std::string& path) {
        if (path == "/r/b" && !std::exchange(interrupted, true)) {
            // The timer fires, the whole scan runs, and its pass takes over.
            harness.simulation.advance(5min);
            EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 2);
            return verdict(updatesAvailable);
        }
        return verdict(upToDate);
    };
    pass();
    EXPECT_THAT(harness.dependencyScans,
                ElementsAre(Pair("/r/a", false), Pair("/r/b", false), Pair("/r/a", false),
                            Pair("/r/c", false), Pair("/r/b", true)));
    EXPECT_FALSE(staleVerdictShown);
    EXPECT_EQ(health(1), upToDate);
    EXPECT_EQ(state().dependencyScanCompletedCount, 3);
    EXPECT_FALSE(state().dependencyScanInProgress);
}

TEST_F(DependencyPass, SupersededOneStoresNothingAndCountsNothing) {
    showUnchecked({"/r/a", "/r/b"});
    std::vector<std::int64_t> counts;
    during("/r/a", [&] {
        harness.scanner->requestRefresh({.refreshDependencies = true});
        harness.simulation.runUntilIdle();
        counts.push_back(state().dependencyScanCompletedCount);
    });
    pass();
    // The second pass passed over the one that was being checked and did the other; the first one
    // added nothing to that, and its repository was then asked about by itself.
    EXPECT_THAT(counts, ElementsAre(2));
    EXPECT_EQ(state().dependencyScanCompletedCount, 2);
    EXPECT_THAT(harness.dependencyScans,
                ElementsAre(Pair("/r/a", false), Pair("/r/b", false), Pair("/r/a", true)));
}

TEST_F(DependencyPass, CountRestartsAtZeroWhenANewOneBegins) {
    showUnchecked({"/r/a", "/r/b"});
    pass();
    ASSERT_EQ(state().dependencyScanCompletedCount, 2);
    std::vector<std::int64_t> counts;
    const auto observation = harness.scanner->observe([&](Property property) {
        if (property == Property::dependencyScanCompletedCount) {
            counts.push_back(state().dependencyScanCompletedCount);
        }
    });
    pass();
    EXPECT_THAT(counts, ElementsAre(0, 1, 2));
}

TEST_F(DependencyPass, PassesOverARepositoryWhoseTargetedRefreshIsRunningAndHasItRefreshedAgain) {
    showUnchecked({"/r/a", "/r/b"});
    harness.refresh();
    // Begun, but not answered before the pass has come to the repository.
    harness.scanner->refreshDependenciesForRepo("/r/a");
    during("/r/a", [this] {
        harness.scanner->requestRefresh({.refreshDependencies = true});
        harness.simulation.runUntilIdle();
        EXPECT_EQ(state().dependencyScanCompletedCount, 2);
    });
    harness.simulation.runUntilIdle();
    EXPECT_THAT(harness.dependencyScans,
                ElementsAre(Pair("/r/a", true), Pair("/r/b", false), Pair("/r/a", true)));
}

TEST_F(DependencyPass, EndsWithTheScannerWithoutTouchingIt) {
    showUnchecked({"/r/a", "/r/b"});
    during("/r/a", [this] { harness.scanner.reset(); });
    harness.answersAtOnce = true;
    harness.scanner->requestRefresh({.refreshDependencies = true});
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.dependencyScans.size(), 1);
}

class RefreshDependenciesForRepo : public DependencyPass {
  protected:
    RefreshDependenciesForRepo() {
        harness.makeShowing({withVerdict("/r/a", checking), withVerdict("/r/b", checking)});
    }
    void refresh(const std::string& path) {
        harness.scanner->refreshDependenciesForRepo(path);
        harness.simulation.runUntilIdle();
    }
};

TEST_F(RefreshDependenciesForRepo, ChecksPastWhatIsRememberedAndReplacesThatEntryAlone) {
    refresh("/r/a");
    EXPECT_THAT(harness.dependencyScans, ElementsAre(Pair("/r/a", true)));
    EXPECT_EQ(health(0), upToDate);
    EXPECT_EQ(health(1), checking);
}

TEST_F(RefreshDependenciesForRepo, ChecksARepositoryThatHadNoProjectsToo) {
    harness.makeShowing({repositoryAt("/r/a")});
    refresh("/r/a");
    EXPECT_EQ(health(0), upToDate);
}

TEST_F(RefreshDependenciesForRepo, DoesNothingForAPathWithoutEntry) {
    refresh("/r/other");
    EXPECT_THAT(harness.dependencyScans, IsEmpty());
    EXPECT_THAT(state().dependencyScanInProgressForRepo, IsEmpty());
}

TEST_F(RefreshDependenciesForRepo, IsInProgressUntilItsVerdictIsStored) {
    harness.scanner->refreshDependenciesForRepo("/r/a");
    EXPECT_THAT(state().dependencyScanInProgressForRepo, ElementsAre(Pair("/r/a", true)));
    harness.simulation.runUntilIdle();
    EXPECT_THAT(harness.notified,
                ElementsAre(Property::dependencyScanInProgressForRepo, Property::repositories,
                            Property::dependencyScanInProgressForRepo));
    EXPECT_THAT(state().dependencyScanInProgressForRepo, IsEmpty());
}

TEST_F(RefreshDependenciesForRepo, ManyCallsWhileItRunsLeadToOneMore) {
    for (int call = 0; call < 5; ++call) harness.scanner->refreshDependenciesForRepo("/r/a");
    harness.simulation.runUntilIdle();
    EXPECT_THAT(harness.dependencyScans, ElementsAre(Pair("/r/a", true), Pair("/r/a", true)));
    EXPECT_THAT(state().dependencyScanInProgressForRepo, IsEmpty());
}

TEST_F(RefreshDependenciesForRepo, RepositoriesRunBesideEachOther) {
    harness.scanner->refreshDependenciesForRepo("/r/a");
    harness.scanner->refreshDependenciesForRepo("/r/b");
    EXPECT_EQ(state().dependencyScanInProgressForRepo.size(), 2);
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.dependencyScans.size(), 2);
}

TEST_F(RefreshDependenciesForRepo, OfARemovedRepositoryStoresNothingAndEnds) {
    harness.scanner->refreshDependenciesForRepo("/r/a");
    harness.scanner->setRepositories({});
    harness.simulation.runUntilIdle();
    EXPECT_THAT(harness.names(), IsEmpty());
    EXPECT_THAT(state().dependencyScanInProgressForRepo, IsEmpty());
}

TEST_F(RefreshDependenciesForRepo, QueuedOneOfARemovedRepositoryIsDropped) {
    harness.scanner->refreshDependenciesForRepo("/r/a");
    harness.scanner->refreshDependenciesForRepo("/r/a");
    harness.scanner->setRepositories({});
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.dependencyScans.size(), 1);
    EXPECT_THAT(state().dependencyScanInProgressForRepo, IsEmpty());
}

TEST_F(RefreshDependenciesForRepo, DoesNotMoveThePassesCounts) {
    refresh("/r/a");
    EXPECT_EQ(harness.timesNotified(Property::dependencyScanCompletedCount), 0);
    EXPECT_EQ(harness.timesNotified(Property::dependencyScanInProgress), 0);
    EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 0);
}

}  // namespace
}  // namespace tarnbeck
