#include <chrono>

#include "ScannerHarness.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::gitHubSuccess;
using ::testing::IsEmpty;
using ::testing::Pair;
using testing::repositoryAt;
using testing::ScannerHarness;
using Policy = GitHubIssueRefreshPolicy;
using Property = RepositoryScanner::Property;

const GitHubRepoScanResult failed{GitHubRepoScanResult::Failed{}};
const GitHubRepoScanResult skipped{GitHubRepoScanResult::Skipped{}};

std::vector<std::int64_t> numbersOf(const ImmutableList<GitHubIssue>& issues) {
    std::vector<std::int64_t> numbers;
    for (const auto& issue : issues) numbers.push_back(issue.number);
    return numbers;
}

GitRepository withIssue(GitRepository repository, std::int64_t number) {
    repository.issues = {{.id = number, .number = number}};
    return repository;
}

class IssuePass : public ::testing::Test {
  protected:
    void show(std::vector<GitRepository> repositories) {
        harness.makeShowing(std::move(repositories));
    }
    void pass(bool forceRefresh = true) {
        harness.scanner->refreshIssues(forceRefresh);
        harness.simulation.runUntilIdle();
    }
    const RepositoryScanner::State& state() { return harness.scanner->state(); }
    // Runs a pass that was scheduled over one repository, and shows its result; whatever it caused
    // still waits.
    void runOnlyThePass() {
        while (harness.issueScans.empty()) ASSERT_TRUE(harness.simulation.queues.runOne());
        while (harness.simulation.loop.runOne()) {
        }
    }

    ScannerHarness harness;
};

TEST_F(IssuePass, AsksOneRepositoryAfterTheOtherInTheirOrder) {
    show({repositoryAt("/r/b"), repositoryAt("/r/a")});
    pass();
    EXPECT_THAT(harness.issueScans, ElementsAre(Pair("/r/b", Policy::forceRefresh),
                                                Pair("/r/a", Policy::forceRefresh)));
}

TEST_F(IssuePass, WithoutForceTheCacheMayAnswer) {
    show({repositoryAt("/r/a")});
    pass(false);
    EXPECT_THAT(harness.issueScans, ElementsAre(Pair("/r/a", Policy::useCache)));
}

TEST_F(IssuePass, DoesNothingWhereIssuesAreNotShown) {
    harness.options.configuration.showIssues = false;
    show({repositoryAt("/r/a")});
    pass();
    EXPECT_THAT(harness.issueScans, IsEmpty());
    EXPECT_EQ(harness.scanner->issueScanGeneration(), 0);
    EXPECT_FALSE(state().issueScanInProgress);
}

TEST_F(IssuePass, ResultIsStoredAndTold) {
    show({repositoryAt("/r/a")});
    harness.answerOfGitHub = [](const std::string&) { return gitHubSuccess({7, 8}, {9}); };
    pass();
    EXPECT_THAT(numbersOf(harness.repository(0).issues), ElementsAre(7, 8));
    EXPECT_EQ(harness.repository(0).pullRequests.size(), 1);
    EXPECT_EQ(harness.timesNotified(Property::repositories), 1);
}

TEST_F(IssuePass, EachResultIsShownBeforeTheNextRepositoryIsAsked) {
    show({repositoryAt("/r/a"), repositoryAt("/r/b")});
    harness.answerOfGitHub = [&](const std::string& path) {
        while (harness.simulation.loop.runOne()) {
        }
        if (path == "/r/b") {
            EXPECT_THAT(numbersOf(harness.repository(0).issues), ElementsAre(1));
        }
        return gitHubSuccess({1});
    };
    pass();
    EXPECT_EQ(harness.issueScans.size(), 2);
}

TEST_F(IssuePass, IsInProgressUntilItsLastResultIsShown) {
    show({repositoryAt("/r/a"), repositoryAt("/r/b")});
    harness.answerOfGitHub = [](const std::string&) { return gitHubSuccess({1}); };
    pass();
    EXPECT_THAT(harness.notified, ElementsAre(Property::issueScanInProgress, Property::repositories,
                                              Property::repositories, Property::lastIssueRefresh,
                                              Property::issueScanInProgress));
    EXPECT_FALSE(state().issueScanInProgress);
}

TEST_F(IssuePass, ObserverThatBeginsTheNextOneFindsItInProgress) {
    show({repositoryAt("/r/a")});
    harness.answerOfGitHub = [](const std::string&) { return gitHubSuccess({1}); };
    bool asked = false;
    bool inProgressAfterwards = false;
    const auto observation = harness.scanner->observe([&](Property property) {
        if (property != Property::lastIssueRefresh || std::exchange(asked, true)) return;
        harness.scanner->refreshIssues(true);
        harness.simulation.loop.post([&] { inProgressAfterwards = state().issueScanInProgress; });
    });
    pass();
    EXPECT_TRUE(inProgressAfterwards);
    EXPECT_FALSE(state().issueScanInProgress);
}

TEST_F(IssuePass, LogTellsTheScheduleAndEveryResult) {
    show({repositoryAt("/r/a"), repositoryAt("/r/b"), repositoryAt("/r/c")});
    harness.answerOfGitHub = [](const std::string& path) {
        if (path == "/r/a") return gitHubSuccess({1}, {2, 3});
        return path == "/r/b" ? skipped : failed;
    };
    pass();
    pass(false);
    EXPECT_THAT(harness.linesOf("ISSUES"),
                ElementsAre("ISSUES scan scheduled generation=1 policy=forceRefresh repositories=3",
                            "ISSUES scan result /r/a: 1 issues, 2 PRs",
                            "ISSUES scan result /r/b: skipped", "ISSUES scan result /r/c: failed",
                            "ISSUES scan scheduled generation=2 policy=useCache repositories=3",
                            "ISSUES scan result /r/a: 1 issues, 2 PRs",
                            "ISSUES scan result /r/b: skipped", "ISSUES scan result /r/c: failed"));
}

TEST_F(IssuePass, FailedAndSkippedResultsLeaveTheDataAsItWas) {
    show({withIssue(repositoryAt("/r/a"), 1), withIssue(repositoryAt("/r/b"), 2)});
    harness.answerOfGitHub = [](const std::string& path) {
        return path == "/r/a" ? failed : skipped;
    };
    pass();
    EXPECT_THAT(numbersOf(harness.repository(0).issues), ElementsAre(1));
    EXPECT_THAT(numbersOf(harness.repository(1).issues), ElementsAre(2));
    EXPECT_EQ(harness.timesNotified(Property::repositories), 0);
}

TEST_F(IssuePass, OneSuccessAmongFailuresMovesTheTimeOfTheLastRefresh) {
    show({repositoryAt("/r/a"), repositoryAt("/r/b")});
    harness.answerOfGitHub = [](const std::string& path) {
        return path == "/r/a" ? gitHubSuccess({}) : failed;
    };
    pass();
    EXPECT_EQ(state().lastIssueRefresh, harness.simulation.loop.wallNow());
}

TEST_F(IssuePass, PassWithoutAnySuccessLeavesTheTimeOfTheLastRefresh) {
    show({repositoryAt("/r/a"), repositoryAt("/r/b")});
    harness.answerOfGitHub = [](const std::string& path) {
        return path == "/r/a" ? skipped : failed;
    };
    pass();
    EXPECT_EQ(state().lastIssueRefresh, std::nullopt);
    EXPECT_FALSE(state().issueScanInProgress);
}

TEST_F(IssuePass, EqualDataCausesNoNotification) {
    show({withIssue(repositoryAt("/r/a"), 1)});
    const auto present = harness.repository(0).issues;
    harness.answerOfGitHub = [&](const std::string&) {
        return GitHubRepoScanResult{GitHubRepoScanResult::Success{{.issues = present}}};
    };
    pass();
    EXPECT_EQ(harness.timesNotified(Property::repositories), 0);
}

TEST_F(IssuePass, ResultForARepositoryThatWasRemovedMeanwhileIsDropped) {
    show({repositoryAt("/r/a")});
    harness.answerOfGitHub = [&](const std::string&) {
        harness.scanner->setRepositories({});
        return gitHubSuccess({1});
    };
    pass();
    EXPECT_THAT(harness.scanner->repositories(), IsEmpty());
}

TEST_F(IssuePass, ResultIsSkippedWhileATargetedRefreshOfTheRepositoryRuns) {
    show({repositoryAt("/r/a")});
    bool inner = false;
    harness.answerOfGitHub = [&](const std::string& path) {
        if (std::exchange(inner, true)) return gitHubSuccess({2});
        harness.scanner->refreshIssuesForRepo(path);
        return gitHubSuccess({1});
    };
    harness.scanner->refreshIssues(true);
    runOnlyThePass();
    EXPECT_THAT(harness.repository(0).issues, IsEmpty());
    EXPECT_THAT(harness.linesOf("ISSUES scan result skipped"),
                ElementsAre("ISSUES scan result skipped for /r/a: bridge refresh pending"));
    harness.simulation.runUntilIdle();
    EXPECT_THAT(numbersOf(harness.repository(0).issues), ElementsAre(2));
}

// A pass that is superseded while it asks its first repository.
class SupersededIssuePass : public IssuePass {
  protected:
    // The first pass finds the issue #1, the second one what `second` says.
    void supersedeDuringTheFirst() {
        harness.answerOfGitHub = [this](const std::string&) {
            if (!superseded_) {
                superseded_ = true;
                harness.scanner->refreshIssues(true);
                return gitHubSuccess({1});
            }
            return isSecond() ? second : gitHubSuccess({1});
        };
        harness.scanner->refreshIssues(true);
    }
    bool isSecond() const { return harness.issueScans.size() > repositoryCount; }

    std::size_t repositoryCount = 1;
    GitHubRepoScanResult second = gitHubSuccess({2});

  private:
    bool superseded_ = false;
};

TEST_F(SupersededIssuePass, StillFillsARepositoryThatHasNeitherIssuesNorPullRequests) {
    show({repositoryAt("/r/a")});
    second = failed;
    supersedeDuringTheFirst();
    harness.simulation.runUntilIdle();
    EXPECT_THAT(numbersOf(harness.repository(0).issues), ElementsAre(1));
}

TEST_F(SupersededIssuePass, DoesNotReplaceIssuesThatAreThere) {
    show({withIssue(repositoryAt("/r/a"), 5)});
    second = failed;
    supersedeDuringTheFirst();
    harness.simulation.runUntilIdle();
    EXPECT_THAT(numbersOf(harness.repository(0).issues), ElementsAre(5));
}

TEST_F(SupersededIssuePass, DoesNotReplaceWhatHasPullRequestsOnly) {
    GitRepository repository = repositoryAt("/r/a");
    repository.pullRequests = {{.id = 5, .number = 5}};
    show({repository});
    second = failed;
    supersedeDuringTheFirst();
    harness.simulation.runUntilIdle();
    EXPECT_THAT(harness.repository(0).issues, IsEmpty());
}

TEST_F(SupersededIssuePass, GoesOnAskingToTheEndOfItsList) {
    show({repositoryAt("/r/a"), repositoryAt("/r/b")});
    repositoryCount = 2;
    supersedeDuringTheFirst();
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.issueScans.size(), 4);
}

TEST_F(SupersededIssuePass, NeitherClearsTheProgressNorMovesTheTime) {
    show({repositoryAt("/r/a")});
    second = failed;
    supersedeDuringTheFirst();
    runOnlyThePass();
    ASSERT_EQ(harness.issueScans.size(), 1);
    EXPECT_TRUE(state().issueScanInProgress);
    EXPECT_EQ(state().lastIssueRefresh, std::nullopt);
    harness.simulation.runUntilIdle();
    EXPECT_FALSE(state().issueScanInProgress);
}

TEST_F(SupersededIssuePass, LeavesTheRepositoryToATargetedRefreshThatRuns) {
    show({repositoryAt("/r/a")});
    harness.answerOfGitHub = [&](const std::string& path) {
        if (harness.issueScans.size() == 1) {
            harness.scanner->refreshIssues(true);
            harness.scanner->refreshIssuesForRepo(path);
        }
        return gitHubSuccess({1});
    };
    harness.scanner->refreshIssues(true);
    runOnlyThePass();
    EXPECT_THAT(harness.repository(0).issues, IsEmpty());
    EXPECT_THAT(harness.linesOf("ISSUES scan result skipped"),
                ElementsAre("ISSUES scan result skipped for /r/a: bridge refresh pending"));
}

TEST_F(IssuePass, EndsEarlyWhenTheScannerHasGone) {
    show({repositoryAt("/r/a"), repositoryAt("/r/b")});
    harness.answerOfGitHub = [&](const std::string&) {
        harness.scanner = nullptr;
        return gitHubSuccess({1});
    };
    harness.scanner->refreshIssues(true);
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.issueScans.size(), 1);
}

class IssuePassOrder : public IssuePass {
  protected:
    std::vector<std::string> pathsAsked() {
        pass();
        std::vector<std::string> paths;
        for (const auto& [path, policy] : harness.issueScans) paths.push_back(path);
        return paths;
    }
};

TEST_F(IssuePassOrder, VisibleRepositoriesComeFirstInTheirOrderAndTheRestByName) {
    show({repositoryAt("/r/e"), repositoryAt("/r/D"), repositoryAt("/r/c"), repositoryAt("/r/b"),
          repositoryAt("/r/a")});
    harness.scanner->setPrioritizedIssueRepoPaths({"/r/c", "/r/b"});
    EXPECT_THAT(pathsAsked(), ElementsAre("/r/c", "/r/b", "/r/a", "/r/D", "/r/e"));
}

TEST_F(IssuePassOrder, EqualNamesKeepTheirOrder) {
    show({repositoryAt("/y/app"), repositoryAt("/x/APP"), repositoryAt("/r/b")});
    harness.scanner->setPrioritizedIssueRepoPaths({"/r/b"});
    EXPECT_THAT(pathsAsked(), ElementsAre("/r/b", "/y/app", "/x/APP"));
}

TEST_F(IssuePassOrder, WithoutVisibleRepositoriesTheListStaysAsItIs) {
    show({repositoryAt("/r/b"), repositoryAt("/r/a")});
    EXPECT_THAT(pathsAsked(), ElementsAre("/r/b", "/r/a"));
}

TEST_F(IssuePassOrder, VisiblePathThatIsNoRepositoryHasNoEffect) {
    show({repositoryAt("/r/b"), repositoryAt("/r/a")});
    harness.scanner->setPrioritizedIssueRepoPaths({"/r/other"});
    EXPECT_THAT(pathsAsked(), ElementsAre("/r/a", "/r/b"));
}

TEST_F(IssuePassOrder, VisiblePathsRepeatedAreAFatalError) {
    show({repositoryAt("/r/a")});
    harness.scanner->setPrioritizedIssueRepoPaths({"/r/a", "/r/a"});
    EXPECT_DEATH(pass(), "Duplicate values for key: '/r/a'");
}

TEST_F(IssuePassOrder, CanBeAskedForByItself) {
    show({repositoryAt("/r/b"), repositoryAt("/r/a")});
    harness.scanner->setPrioritizedIssueRepoPaths({"/r/a"});
    const auto ordered = harness.scanner->prioritizedRepositories(harness.scanner->repositories());
    ASSERT_EQ(ordered.size(), 2);
    EXPECT_EQ(ordered[0]->path, "/r/a");
}

TEST(IssuePass_AfterAFullScan, ForcedRequestAsksPastTheCache) {
    ScannerHarness harness({"/r/a"});
    harness.make();
    harness.refresh({.refreshIssues = true, .forceIssueRefresh = true});
    EXPECT_THAT(harness.issueScans, ElementsAre(Pair("/r/a", Policy::forceRefresh)));
}

TEST(IssuePass_AfterAFullScan, OrdinaryRequestUsesTheCache) {
    ScannerHarness harness({"/r/a"});
    harness.make();
    harness.refresh({.refreshIssues = true});
    EXPECT_THAT(harness.issueScans, ElementsAre(Pair("/r/a", Policy::useCache)));
}

TEST(IssuePass_AfterAFullScan, RequestWithoutIssuesAsksNobody) {
    ScannerHarness harness({"/r/a"});
    harness.make();
    harness.refresh({.refreshDependencies = true});
    EXPECT_THAT(harness.issueScans, IsEmpty());
}

TEST(IssuePass_AfterAFullScan, NoneRunsWhereIssuesAreNotShownWhateverTheRequestSays) {
    ScannerHarness harness({"/r/a"});
    harness.options.configuration.showIssues = false;
    harness.make();
    harness.refresh({.refreshIssues = true, .forceIssueRefresh = true});
    EXPECT_THAT(harness.issueScans, IsEmpty());
}

TEST(IssuePass_AfterAFullScan, BeginsWhenScanningHasEnded) {
    ScannerHarness harness({"/r/a"});
    harness.make();
    harness.refresh({.refreshIssues = true});
    EXPECT_THAT(harness.notified,
                ElementsAre(Property::isScanning, Property::repositories, Property::lastScan,
                            Property::isScanning, Property::issueScanInProgress,
                            Property::issueScanInProgress));
}

TEST(IssuePass_AfterAFullScan, IssuesSurviveTheNextFullScan) {
    ScannerHarness harness({"/r/a"});
    harness.answerOfGitHub = [](const std::string&) { return gitHubSuccess({1}); };
    harness.make();
    harness.refresh({.refreshIssues = true});
    harness.refresh();
    EXPECT_THAT(numbersOf(harness.repository(0).issues), ElementsAre(1));
}

}  // namespace
}  // namespace tarnbeck
