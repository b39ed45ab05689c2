#include <algorithm>

#include "ScannerHarness.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using testing::repositoryAt;
using testing::ScannerHarness;
using testing::verdict;
using Property = RepositoryScanner::Property;
using Names = std::vector<std::string>;

GitHubIssue issue(std::int64_t number) {
    return {.id = number, .number = number};
}

TEST(FullScan_Walk, RepositoriesAreScannedOneAfterTheOtherInConfiguredOrder) {
    ScannerHarness harness({"/r/b", "/r/a", "/r/c"});
    harness.make().requestRefresh({});
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.scannedPaths, (Names{"/r/b"}));
    harness.answerNext();
    EXPECT_EQ(harness.scannedPaths, (Names{"/r/b", "/r/a"}));
    harness.answerNext();
    harness.answerNext();
    EXPECT_EQ(harness.scannedPaths, (Names{"/r/b", "/r/a", "/r/c"}));
}

TEST(FullScan_Walk, HandlerGetsThePathAsItIsConfigured) {
    ScannerHarness harness({"~/r/a"});
    harness.make();
    harness.refresh();
    EXPECT_EQ(harness.scannedPaths, (Names{"~/r/a"}));
}

TEST(FullScan_Walk, ThousandsOfScansThatAnswerAtOnceDoNotNest) {
    std::vector<std::string> paths;
    for (int index = 0; index < 50000; ++index) paths.push_back("/r/" + std::to_string(index));
    ScannerHarness harness(paths);
    harness.answer = [](const std::string&) { return std::nullopt; };
    harness.make();
    harness.refresh();
    EXPECT_EQ(harness.scannedPaths.size(), 50000);
    EXPECT_FALSE(harness.scanner->isScanning());
}

TEST(FullScan_Walk, ConfiguredPathsOfTheRequestsMomentCount) {
    ScannerHarness harness({"/r/a"});
    harness.make().requestRefresh({});
    harness.simulation.runUntilIdle();
    auto configuration = harness.scanner->configuration();
    configuration.repoPaths = {"/r/a", "/r/b"};
    harness.scanner->setConfiguration(configuration);
    harness.answerNext();
    EXPECT_EQ(harness.names(), (Names{"a"}));
}

TEST(FullScan_Fetch, RunsBeforeEachScanWhereThereIsAGitEntry) {
    ScannerHarness harness;
    harness.folder.makeFolder("with/.git");
    harness.folder.write("linked/.git", "gitdir: elsewhere");
    harness.folder.makeFolder("without");
    for (const char* name : {"with", "without", "linked"}) {
        harness.options.configuration.repoPaths.push_back("~/" + std::string(name));
    }
    harness.make();
    harness.refresh({.refreshRemotes = true});
    ASSERT_EQ(harness.gitInvocations.size(), 2);
    const GitInvocation& fetch = harness.gitInvocations[0];
    EXPECT_EQ(fetch.executableArgs,
              (Names{"-C", harness.folder / "with", "fetch", "--prune", "--quiet"}));
    EXPECT_EQ(fetch.logicalArgs, (Names{"fetch", "--prune", "--quiet"}));
    EXPECT_EQ(fetch.logRepoPath, harness.folder / "with");
    EXPECT_EQ(fetch.timeout, 15s);
    EXPECT_TRUE(fetch.allowEmpty);
    EXPECT_EQ(harness.gitInvocations[1].logRepoPath, harness.folder / "linked");
    EXPECT_EQ(harness.scannedPaths.size(), 3);
}

TEST(FullScan_Fetch, ComesRightBeforeTheScanOfItsRepository) {
    ScannerHarness harness;
    harness.folder.makeFolder("a/.git");
    harness.folder.makeFolder("b/.git");
    harness.options.configuration.repoPaths = {"~/a", "~/b"};
    harness.make().requestRefresh({.refreshRemotes = true});
    harness.simulation.runUntilIdle();
    EXPECT_EQ(harness.gitInvocations.size(), 1);
    EXPECT_EQ(harness.scannedPaths, (Names{"~/a"}));
    harness.answerNext();
    EXPECT_EQ(harness.gitInvocations.size(), 2);
    EXPECT_EQ(harness.scannedPaths, (Names{"~/a", "~/b"}));
}

TEST(FullScan_Fetch, OneThatFailsDoesNotKeepTheRepositoryFromBeingScanned) {
    ScannerHarness harness;
    harness.folder.makeFolder("a/.git");
    harness.options.configuration.repoPaths = {"~/a"};
    harness.gitAnswer = std::nullopt;
    harness.make();
    harness.refresh({.refreshRemotes = true});
    EXPECT_EQ(harness.gitInvocations.size(), 1);
    EXPECT_EQ(harness.names(), (Names{"a"}));
}

TEST(FullScan_Fetch, DoesNotRunUnlessAskedFor) {
    ScannerHarness harness;
    harness.folder.makeFolder("with/.git");
    harness.options.configuration.repoPaths = {"~/with"};
    harness.make();
    harness.refresh();
    EXPECT_TRUE(harness.gitInvocations.empty());
}

TEST(FullScan_Result, ListIsReplacedInOneStepByName) {
    ScannerHarness harness({"/r/b", "/r/A", "/r/c"});
    harness.make();
    harness.refresh();
    EXPECT_EQ(harness.names(), (Names{"A", "b", "c"}));
    EXPECT_EQ(std::ranges::count(harness.notified, Property::repositories), 1);
}

TEST(FullScan_Result, EmptyRepoPathsFinishAtOnceWithAnEmptyListAndLastScanSet) {
    ScannerHarness harness;
    harness.make();
    harness.refresh();
    EXPECT_TRUE(harness.scanner->repositories().empty());
    EXPECT_EQ(harness.scanner->state().lastScan, harness.simulation.loop.wallNow());
    EXPECT_FALSE(harness.scanner->isScanning());
}

TEST(FullScan_Result, LastScanIsTheMomentOfTheEnd) {
    ScannerHarness harness({"/r/a"});
    harness.make().requestRefresh({});
    harness.simulation.advance(7s);
    EXPECT_FALSE(harness.scanner->state().lastScan.has_value());
    harness.answerNext();
    EXPECT_EQ(harness.scanner->state().lastScan, harness.simulation.loop.wallNow());
}

TEST(FullScan_Result, OnlyTheRepositoriesThatAreNotCleanAreCountedAsDirty) {
    ScannerHarness harness({"/r/a", "/r/b"});
    harness.answer = [](const std::string& path) {
        GitRepository repository = repositoryAt(path);
        if (path == "/r/b") repository.uncommittedChanges = {{.status = "M", .filePath = "f"}};
        return repository;
    };
    harness.make();
    harness.refresh();
    EXPECT_EQ(harness.scanner->dirtyRepoCount(), 1);
}

TEST(FullScan_CarryOver, IssuesAndVerdictOfThePreviousSnapshotSurviveAFreshScan) {
    ScannerHarness harness({"/r/a"});
    harness.answer = [](const std::string& path) {
        GitRepository repository = repositoryAt(path);
        repository.issues = {issue(1)};
        repository.pullRequests = {{.id = 2, .number = 2}};
        repository.dependencySummary = verdict(DependencyHealth::upToDate);
        return repository;
    };
    harness.make();
    harness.refresh();
    harness.answer = repositoryAt;
    harness.refresh();
    const GitRepository& repository = *harness.scanner->repositories()[0];
    EXPECT_EQ(repository.issues.size(), 1);
    EXPECT_EQ(repository.pullRequests.size(), 1);
    EXPECT_EQ(repository.dependencySummary.status(), DependencyHealth::upToDate);
}

TEST(FullScan_CarryOver, UncommittedChangesComeFromTheFullScan) {
    ScannerHarness harness({"/r/a"});
    harness.answer = [](const std::string& path) {
        GitRepository repository = repositoryAt(path);
        repository.uncommittedChanges = {{.status = "M", .filePath = "old"}};
        return repository;
    };
    harness.make();
    harness.refresh();
    harness.answer = repositoryAt;
    harness.refresh();
    EXPECT_TRUE(harness.scanner->repositories()[0]->uncommittedChanges.empty());
}

TEST(FullScan_CarryOver, IssuesThatArriveDuringTheScanAreNotLostButItsChangesAre) {
    ScannerHarness harness({"/r/a"});
    harness.make().requestRefresh({});
    harness.simulation.runUntilIdle();
    GitRepository targeted = repositoryAt("/r/a");
    targeted.issues = {issue(3)};
    targeted.uncommittedChanges = {{.status = "M", .filePath = "f"}};
    harness.scanner->setRepositories({std::make_shared<const GitRepository>(targeted)});
    harness.answerNext();
    const GitRepository& repository = *harness.scanner->repositories()[0];
    EXPECT_EQ(repository.issues.size(), 1);
    EXPECT_TRUE(repository.uncommittedChanges.empty());
}

TEST(FullScan_CarryOver, CacheFillsWhatWasNeverSeenBefore) {
    ScannerHarness harness({"/r/a"});
    harness.options.knownGitHubData.lastKnownData = [](const std::string& path) {
        return path == "/r/a" ? std::optional(GitHubRepositoryData{.issues = {issue(7)}})
                              : std::nullopt;
    };
    harness.make();
    harness.refresh();
    ASSERT_EQ(harness.scanner->repositories()[0]->issues.size(), 1);
    EXPECT_EQ(harness.scanner->repositories()[0]->issues[0].number, 7);
}

TEST(FullScan_LastIssueRefresh, FirstScanTakesTheLatestStoredFetchDateAfterARestart) {
    ScannerHarness harness({"/r/a", "/r/b", "/r/unknown"});
    const WallTime now = harness.simulation.loop.wallNow();
    harness.options.knownGitHubData.lastKnownIssueFetchDate =
        [now](const std::string& path) -> std::optional<WallTime> {
        if (path == "/r/a") return now - 10min;
        if (path == "/r/b") return now - 5min;
        return std::nullopt;
    };
    harness.make();
    harness.refresh();
    EXPECT_EQ(harness.scanner->state().lastIssueRefresh, now - 5min);
}

TEST(FullScan_LastIssueRefresh, DatesOfRepositoriesThatAreNotThereDoNotCount) {
    ScannerHarness harness({"/r/a", "/r/failing"});
    const WallTime now = harness.simulation.loop.wallNow();
    harness.options.knownGitHubData.lastKnownIssueFetchDate = [now](const std::string& path) {
        return std::optional(path == "/r/failing" ? now : now - 1h);
    };
    harness.answer = [](const std::string& path) {
        return path == "/r/failing" ? std::nullopt : std::optional(repositoryAt(path));
    };
    harness.make();
    harness.refresh();
    EXPECT_EQ(harness.scanner->state().lastIssueRefresh, now - 1h);
}

TEST(FullScan_LastIssueRefresh, OnceItIsThereLaterScansLeaveIt) {
    ScannerHarness harness({"/r/a"});
    const WallTime now = harness.simulation.loop.wallNow();
    WallTime stored = now - 1h;
    harness.options.knownGitHubData.lastKnownIssueFetchDate = [&](const std::string&) {
        return std::optional(stored);
    };
    harness.make();
    harness.refresh();
    stored = now;
    harness.refresh();
    EXPECT_EQ(harness.scanner->state().lastIssueRefresh, now - 1h);
}

TEST(FullScan_LastIssueRefresh, IsTheDateThatWasStoredWhenTheScanBegan) {
    ScannerHarness harness({"/r/a"});
    const WallTime now = harness.simulation.loop.wallNow();
    WallTime stored = now - 1h;
    harness.options.knownGitHubData.lastKnownIssueFetchDate = [&](const std::string&) {
        return std::optional(stored);
    };
    harness.make().requestRefresh({});
    harness.simulation.runUntilIdle();
    stored = now;
    harness.answerNext();
    EXPECT_EQ(harness.scanner->state().lastIssueRefresh, now - 1h);
}

TEST(FullScan_LastIssueRefresh, StaysAbsentWithoutStoredDates) {
    ScannerHarness harness({"/r/a"});
    harness.make();
    harness.refresh();
    EXPECT_FALSE(harness.scanner->state().lastIssueRefresh.has_value());
    EXPECT_EQ(std::ranges::count(harness.notified, Property::lastIssueRefresh), 0);
}

TEST(FullScan_Passes, DependencyPassIsDueOnlyWhenAskedFor) {
    ScannerHarness harness({"/r/a"});
    harness.make();
    harness.refresh();
    EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 0);
    harness.refresh({.refreshDependencies = true});
    EXPECT_EQ(harness.scanner->dependencyScanGeneration(), 1);
}

TEST(FullScan_Passes, WithShowIssuesFalseNoIssuePassIsDueWhateverTheRequestSays) {
    ScannerHarness harness({"/r/a"});
    harness.options.configuration.showIssues = false;
    harness.make();
    harness.refresh({.refreshIssues = true, .forceIssueRefresh = true});
    EXPECT_EQ(harness.scanner->issueScanGeneration(), 0);
}

TEST(FullScan_Notifications, EachPropertyIsToldOnceAfterItsWriteAndScanningLast) {
    ScannerHarness harness({"/r/a"});
    harness.make();
    harness.refresh();
    EXPECT_EQ(harness.notified, (std::vector{Property::isScanning, Property::repositories,
                                             Property::lastScan, Property::isScanning}));
}

TEST(FullScan_Notifications, LastIssueRefreshStandsBetweenTheListAndTheLastScan) {
    ScannerHarness harness({"/r/a"});
    harness.options.knownGitHubData.lastKnownIssueFetchDate = [&](const std::string&) {
        return std::optional(harness.simulation.loop.wallNow());
    };
    harness.make();
    harness.refresh();
    EXPECT_EQ(harness.notified,
              (std::vector{Property::isScanning, Property::repositories, Property::lastIssueRefresh,
                           Property::lastScan, Property::isScanning}));
}

TEST(FullScan_Notifications, ComeAlsoWhenTheValueIsEqual) {
    ScannerHarness harness({"/r/a"});
    harness.make();
    harness.refresh();
    harness.refresh();
    EXPECT_EQ(std::ranges::count(harness.notified, Property::repositories), 2);
}

}  // namespace
}  // namespace tarnbeck
