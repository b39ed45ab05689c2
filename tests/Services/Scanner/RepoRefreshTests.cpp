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
using testing::verdict;
using Property = RepositoryScanner::Property;

GitRepository onBranch(const std::string& path, const std::string& branch) {
    GitRepository repository = repositoryAt(path);
    repository.currentBranch = branch;
    return repository;
}

class OneRepository : public ::testing::Test {
  protected:
    OneRepository() {
        harness.makeShowing({onBranch("/r/a", "old"), onBranch("/r/b", "old")});
        harness.answer = [](const std::string& path) { return onBranch(path, "new"); };
    }
    RepositoryScanner& scanner() { return *harness.scanner; }
    const RepositoryScanner::State& state() { return harness.scanner->state(); }
    void settle() { harness.simulation.runUntilIdle(); }

    ScannerHarness harness;
};

using RefreshGitForRepo = OneRepository;

TEST_F(RefreshGitForRepo, ReplacesThatEntryAlone) {
    harness.answersAtOnce = true;
    scanner().refreshGitForRepo("/r/a");
    settle();
    EXPECT_EQ(harness.repository(0).currentBranch, "new");
    EXPECT_EQ(harness.repository(1).currentBranch, "old");
    EXPECT_THAT(harness.scannedPaths, ElementsAre("/r/a"));
    EXPECT_EQ(harness.timesNotified(Property::repositories), 1);
}

TEST_F(RefreshGitForRepo, DoesNothingForAPathWithoutEntry) {
    scanner().refreshGitForRepo("/r/other");
    settle();
    EXPECT_THAT(harness.scannedPaths, IsEmpty());
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
}

TEST_F(RefreshGitForRepo, IsInProgressUntilItsResultIsThere) {
    scanner().refreshGitForRepo("/r/a");
    settle();
    EXPECT_THAT(state().gitScanInProgressForRepo, ElementsAre(Pair("/r/a", true)));
    harness.answerNext();
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
    EXPECT_EQ(harness.timesNotified(Property::gitScanInProgressForRepo), 2);
}

TEST_F(RefreshGitForRepo, ThreeCallsDuringARunLeadToExactlyOneMoreRun) {
    scanner().refreshGitForRepo("/r/a");
    settle();
    for (int call = 0; call < 3; ++call) scanner().refreshGitForRepo("/r/a");
    settle();
    EXPECT_EQ(harness.scannedPaths.size(), 1);
    harness.answerNext();
    EXPECT_EQ(harness.scannedPaths.size(), 2);
    harness.answerNext();
    EXPECT_EQ(harness.scannedPaths.size(), 2);
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
}

TEST_F(RefreshGitForRepo, DifferentRepositoriesRunTogether) {
    scanner().refreshGitForRepo("/r/a");
    scanner().refreshGitForRepo("/r/b");
    settle();
    EXPECT_EQ(harness.waiting.size(), 2);
}

TEST_F(RefreshGitForRepo, FailedScanLeavesTheEntryAndEndsTheProgress) {
    harness.answer = [](const std::string&) { return std::nullopt; };
    harness.answersAtOnce = true;
    scanner().refreshGitForRepo("/r/a");
    settle();
    EXPECT_EQ(harness.repository(0).currentBranch, "old");
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
    EXPECT_EQ(harness.timesNotified(Property::repositories), 0);
}

TEST_F(RefreshGitForRepo, FailedScanIsStillFollowedByTheQueuedOne) {
    harness.answer = [](const std::string&) { return std::nullopt; };
    scanner().refreshGitForRepo("/r/a");
    settle();
    scanner().refreshGitForRepo("/r/a");
    harness.answerNext();
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(RefreshGitForRepo, EntryRemovedDuringTheRunIsNotBroughtBack) {
    scanner().refreshGitForRepo("/r/a");
    settle();
    scanner().setRepositories({});
    harness.answerNext();
    EXPECT_THAT(scanner().repositories(), IsEmpty());
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
}

TEST_F(RefreshGitForRepo, QueuedMarkStaysWhereTheEntryHasGone) {
    scanner().refreshGitForRepo("/r/a");
    settle();
    scanner().refreshGitForRepo("/r/a");
    const auto shown = scanner().repositories();
    scanner().setRepositories({});
    harness.answerNext();
    EXPECT_EQ(harness.scannedPaths.size(), 1);
    // Back again, its next refresh is followed by the one that is still queued.
    scanner().setRepositories(shown);
    scanner().refreshGitForRepo("/r/a");
    settle();
    harness.answerNext();
    EXPECT_EQ(harness.scannedPaths.size(), 3);
}

TEST_F(RefreshGitForRepo, IssuesAndPullRequestsAreCarriedOver) {
    GitRepository present = onBranch("/r/a", "old");
    present.issues = {{.id = 1, .number = 1}};
    present.pullRequests = {{.id = 2, .number = 2}};
    scanner().setRepositories({std::make_shared<const GitRepository>(present)});
    harness.answersAtOnce = true;
    scanner().refreshGitForRepo("/r/a");
    settle();
    EXPECT_EQ(harness.repository(0).currentBranch, "new");
    EXPECT_EQ(harness.repository(0).issues, present.issues);
    EXPECT_EQ(harness.repository(0).pullRequests, present.pullRequests);
}

TEST_F(RefreshGitForRepo, CarriesOverWhatIsThereWhenItEndsNotWhenItBegan) {
    scanner().refreshGitForRepo("/r/a");
    settle();
    GitRepository meanwhile = onBranch("/r/a", "old");
    meanwhile.issues = {{.id = 9, .number = 9}};
    scanner().setRepositories({std::make_shared<const GitRepository>(meanwhile)});
    harness.answerNext();
    EXPECT_EQ(harness.repository(0).issues, meanwhile.issues);
}

GitRepository judged(DependencyHealth health) {
    GitRepository repository = repositoryAt("/r/a");
    repository.dependencySummary = verdict(health);
    return repository;
}

DependencySummary verdictCarriedOver(const GitRepository& present, const GitRepository& fresh) {
    return RepositoryRefreshSupport::carryingOverFrom(present, fresh).dependencySummary;
}

TEST_F(RefreshGitForRepo, DependencyVerdictIsCarriedOverANewSnapshotWithoutOne) {
    const GitRepository present = judged(DependencyHealth::upToDate);
    scanner().setRepositories({std::make_shared<const GitRepository>(present)});
    harness.answersAtOnce = true;
    scanner().refreshGitForRepo("/r/a");
    settle();
    EXPECT_EQ(harness.repository(0).dependencySummary, present.dependencySummary);
}

TEST(CarryingOver, FreshVerdictStays) {
    const GitRepository present = judged(DependencyHealth::upToDate);
    const GitRepository fresh = judged(DependencyHealth::error);
    EXPECT_EQ(verdictCarriedOver(present, fresh), fresh.dependencySummary);
}

TEST(CarryingOver, VerdictReplacesOneThatIsStillBeingChecked) {
    const GitRepository present = judged(DependencyHealth::upToDate);
    const GitRepository fresh = judged(DependencyHealth::checking);
    EXPECT_EQ(verdictCarriedOver(present, fresh), present.dependencySummary);
}

TEST(CarryingOver, PresentCheckIsNoVerdictToCarryOver) {
    const GitRepository present = judged(DependencyHealth::checking);
    EXPECT_EQ(verdictCarriedOver(present, repositoryAt("/r/a")), DependencySummary{});
}

TEST(CarryingOver, FreshIssuesStay) {
    GitRepository present = repositoryAt("/r/a");
    present.issues = {{.id = 1, .number = 1}};
    GitRepository fresh = repositoryAt("/r/a");
    fresh.issues = {{.id = 2, .number = 2}};
    EXPECT_EQ(RepositoryRefreshSupport::carryingOverFrom(present, fresh).issues, fresh.issues);
}

TEST_F(OneRepository, TargetedIssueRefreshDuringAFullScanIsNotLost) {
    AppConfiguration configuration;
    configuration.repoPaths = {"/r/a"};
    scanner().setConfiguration(configuration);
    harness.answerOfGitHub = [](const std::string&) { return gitHubSuccess({4}); };
    scanner().requestRefresh({});
    settle();
    scanner().refreshIssuesForRepo("/r/a");
    settle();
    harness.answerNext();
    ASSERT_EQ(scanner().repositories().size(), 1);
    EXPECT_EQ(harness.repository(0).issues.size(), 1);
}

TEST_F(OneRepository, TargetedRefreshesDuringAFullScanThatFailsAreNotLost) {
    AppConfiguration configuration;
    configuration.repoPaths = {"/r/a"};
    scanner().setConfiguration(configuration);
    harness.answerOfGitHub = [](const std::string&) { return gitHubSuccess({4}); };
    scanner().requestRefresh({});
    settle();
    scanner().refreshIssuesForRepo("/r/a");
    scanner().refreshGitForRepo("/r/a");
    settle();
    auto ofFullScan = std::move(harness.waiting.front());
    harness.waiting.pop_front();
    harness.answerNext();  // the targeted one
    ofFullScan.second(std::nullopt);
    settle();
    ASSERT_EQ(scanner().repositories().size(), 1);
    EXPECT_EQ(harness.repository(0).currentBranch, "new");
    EXPECT_EQ(harness.repository(0).issues.size(), 1);
}

TEST_F(RefreshGitForRepo, UncommittedChangesComeFromTheFullScanThatEndsLater) {
    AppConfiguration configuration;
    configuration.repoPaths = {"/r/a"};
    scanner().setConfiguration(configuration);
    scanner().requestRefresh({});
    settle();
    scanner().refreshGitForRepo("/r/a");
    settle();
    auto ofFullScan = std::move(harness.waiting.front());
    harness.waiting.pop_front();
    harness.answerNext();  // the targeted one
    GitRepository dirty = onBranch("/r/a", "new");
    dirty.uncommittedChanges = {{.status = "M", .filePath = "x"}};
    ofFullScan.second(dirty);
    settle();
    EXPECT_EQ(harness.repository(0).uncommittedChanges.size(), 1);
}

TEST_F(RefreshGitForRepo, NothingHappensWhenTheScannerHasGone) {
    scanner().refreshGitForRepo("/r/a");
    settle();
    harness.scanner = nullptr;
    harness.answerNext();
    EXPECT_THAT(harness.waiting, IsEmpty());
}

using RefreshIssuesForRepo = OneRepository;

TEST_F(RefreshIssuesForRepo, AsksPastTheCacheAndStoresTheResult) {
    harness.answerOfGitHub = [](const std::string&) { return gitHubSuccess({1}, {2}); };
    scanner().refreshIssuesForRepo("/r/a");
    settle();
    EXPECT_THAT(harness.issueScans,
                ElementsAre(Pair("/r/a", GitHubIssueRefreshPolicy::forceRefresh)));
    EXPECT_EQ(harness.repository(0).issues.size(), 1);
    EXPECT_EQ(harness.repository(0).pullRequests.size(), 1);
    EXPECT_THAT(harness.lines,
                ElementsAre("ISSUES targeted refresh success for /r/a: 1 issues, 1 PRs"));
}

TEST_F(RefreshIssuesForRepo, DoesNothingWhereIssuesAreNotShown) {
    AppConfiguration configuration;
    configuration.showIssues = false;
    scanner().setConfiguration(configuration);
    scanner().refreshIssuesForRepo("/r/a");
    settle();
    EXPECT_THAT(harness.issueScans, IsEmpty());
}

TEST_F(RefreshIssuesForRepo, DoesNothingForAPathWithoutEntry) {
    scanner().refreshIssuesForRepo("/r/other");
    settle();
    EXPECT_THAT(harness.issueScans, IsEmpty());
}

TEST_F(RefreshIssuesForRepo, IsInProgressUntilItsResultIsThere) {
    scanner().refreshIssuesForRepo("/r/a");
    EXPECT_THAT(state().issueScanInProgressForRepo, ElementsAre(Pair("/r/a", true)));
    settle();
    EXPECT_THAT(state().issueScanInProgressForRepo, IsEmpty());
    EXPECT_EQ(harness.timesNotified(Property::issueScanInProgressForRepo), 2);
}

TEST_F(RefreshIssuesForRepo, AnyNumberOfCallsWhileItRunsLeadToOneMoreRunAndALineEach) {
    scanner().refreshIssuesForRepo("/r/a");
    scanner().refreshIssuesForRepo("/r/a");
    scanner().refreshIssuesForRepo("/r/a");
    settle();
    EXPECT_EQ(harness.issueScans.size(), 2);
    EXPECT_THAT(harness.linesOf("ISSUES targeted refresh queued"),
                ElementsAre("ISSUES targeted refresh queued while running for /r/a",
                            "ISSUES targeted refresh queued while running for /r/a"));
}

TEST_F(RefreshIssuesForRepo, IdenticalDataCausesNoNotificationOfTheRepositories) {
    harness.answerOfGitHub = [](const std::string&) { return gitHubSuccess({1}, {2}); };
    scanner().refreshIssuesForRepo("/r/a");
    settle();
    harness.forget();
    scanner().refreshIssuesForRepo("/r/a");
    settle();
    EXPECT_EQ(harness.timesNotified(Property::repositories), 0);
    EXPECT_THAT(harness.lines,
                ElementsAre("ISSUES targeted refresh success for /r/a: 1 issues, 1 PRs"));
}

TEST_F(RefreshIssuesForRepo, SuccessForAnEntryThatHasGoneSaysNothing) {
    harness.answerOfGitHub = [&](const std::string&) {
        scanner().setRepositories({});
        return gitHubSuccess({1});
    };
    scanner().refreshIssuesForRepo("/r/a");
    settle();
    EXPECT_THAT(harness.lines, IsEmpty());
    EXPECT_THAT(scanner().repositories(), IsEmpty());
    EXPECT_THAT(state().issueScanInProgressForRepo, IsEmpty());
}

TEST_F(RefreshIssuesForRepo, FollowUpOfAnEntryThatHasGoneDoesNothing) {
    harness.answerOfGitHub = [&](const std::string&) {
        scanner().refreshIssuesForRepo("/r/a");
        scanner().setRepositories({});
        return gitHubSuccess({1});
    };
    scanner().refreshIssuesForRepo("/r/a");
    settle();
    EXPECT_EQ(harness.issueScans.size(), 1);
    EXPECT_THAT(state().issueScanInProgressForRepo, IsEmpty());
}

TEST_F(RefreshIssuesForRepo, AnswerThatComesWhenTheScannerHasGoneFindsNobody) {
    harness.answerOfGitHub = [&](const std::string&) {
        harness.scanner = nullptr;
        return gitHubSuccess({1});
    };
    scanner().refreshIssuesForRepo("/r/a");
    settle();
    EXPECT_EQ(harness.issueScans.size(), 1);
}

TEST_F(RefreshIssuesForRepo, NobodyIsAskedWhenTheScannerHasGone) {
    scanner().refreshIssuesForRepo("/r/a");
    harness.scanner = nullptr;
    settle();
    EXPECT_THAT(harness.issueScans, IsEmpty());
}

TEST_F(RefreshIssuesForRepo, SkippedIsLoggedAndChangesNothing) {
    scanner().refreshIssuesForRepo("/r/a");
    settle();
    EXPECT_THAT(harness.lines, ElementsAre("ISSUES targeted refresh skipped for /r/a"));
    EXPECT_EQ(harness.timesNotified(Property::repositories), 0);
}

TEST_F(RefreshIssuesForRepo, FailedIsLoggedAndChangesNothing) {
    harness.answerOfGitHub = [](const std::string&) {
        return GitHubRepoScanResult{GitHubRepoScanResult::Failed{}};
    };
    scanner().refreshIssuesForRepo("/r/a");
    settle();
    EXPECT_THAT(harness.lines, ElementsAre("ISSUES targeted refresh failed for /r/a"));
    EXPECT_EQ(harness.timesNotified(Property::repositories), 0);
}

}  // namespace
}  // namespace tarnbeck
