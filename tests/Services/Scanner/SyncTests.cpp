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

GitRepository behind(const std::string& path) {
    GitRepository repository = repositoryAt(path);
    repository.syncStatus = GitSyncStatus::Behind{.upstream = "origin/main", .count = 2};
    return repository;
}

GitRepository upToDate(const std::string& path) {
    GitRepository repository = repositoryAt(path);
    repository.syncStatus = GitSyncStatus::UpToDate{.upstream = "origin/main"};
    return repository;
}

class SyncRepo : public ::testing::Test {
  protected:
    SyncRepo() { harness.makeShowing({behind("/r/a")}); }

    void sync() {
        harness.scanner->syncRepo("/r/a");
        harness.simulation.runUntilIdle();
    }
    // Answers the next scan with this.
    void scanned(std::optional<GitRepository> repository) {
        harness.answer = [repository](const std::string&) { return repository; };
        harness.answerNext();
    }
    std::vector<std::string> commands() {
        std::vector<std::string> commands;
        for (const auto& invocation : harness.gitInvocations) {
            std::string words;
            for (const std::string& word : invocation.executableArgs) words += word + " ";
            commands.push_back(words);
        }
        return commands;
    }
    bool pulled() { return commands().size() > 1; }
    const RepositoryScanner::State& state() { return harness.scanner->state(); }

    ScannerHarness harness;
};

TEST_F(SyncRepo, FetchesLooksPullsAndLooksAgain) {
    sync();
    EXPECT_THAT(commands(), ElementsAre("-C /r/a fetch --prune --quiet "));
    scanned(behind("/r/a"));
    EXPECT_THAT(commands(),
                ElementsAre("-C /r/a fetch --prune --quiet ", "-C /r/a pull --ff-only "));
    scanned(upToDate("/r/a"));
    EXPECT_EQ(harness.repository(0), upToDate("/r/a"));
    EXPECT_EQ(harness.scannedPaths.size(), 2);
}

TEST_F(SyncRepo, BothCommandsMayAnswerNothingAndHaveFifteenSeconds) {
    sync();
    scanned(behind("/r/a"));
    ASSERT_EQ(harness.gitInvocations.size(), 2);
    for (const auto& invocation : harness.gitInvocations) {
        EXPECT_TRUE(invocation.allowEmpty);
        EXPECT_EQ(invocation.timeout, 15s);
        EXPECT_EQ(invocation.logRepoPath, "/r/a");
    }
    EXPECT_THAT(harness.gitInvocations[1].logicalArgs, ElementsAre("pull", "--ff-only"));
}

TEST_F(SyncRepo, IsInProgressUntilTheLastLook) {
    sync();
    EXPECT_THAT(state().gitScanInProgressForRepo, ElementsAre(Pair("/r/a", true)));
    scanned(behind("/r/a"));
    EXPECT_THAT(state().gitScanInProgressForRepo, ElementsAre(Pair("/r/a", true)));
    scanned(upToDate("/r/a"));
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
}

TEST_F(SyncRepo, OfARepositoryThatIsNotBehindDoesNothing) {
    harness.makeShowing({upToDate("/r/a")});
    sync();
    EXPECT_THAT(commands(), IsEmpty());
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
}

TEST_F(SyncRepo, OfAPathWithoutEntryDoesNothing) {
    harness.scanner->syncRepo("/r/other");
    harness.simulation.runUntilIdle();
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(SyncRepo, WhileARefreshOfTheRepositoryRunsIsDroppedNotQueued) {
    harness.scanner->refreshGitForRepo("/r/a");
    sync();
    scanned(behind("/r/a"));
    EXPECT_THAT(commands(), IsEmpty());
    EXPECT_EQ(harness.scannedPaths.size(), 1);
}

TEST_F(SyncRepo, DoesNotPullARepositoryThatTurnedDirtyAfterItsLastScan) {
    sync();
    GitRepository dirty = behind("/r/a");
    dirty.uncommittedChanges = {{.status = "M", .filePath = "x"}};
    scanned(dirty);
    EXPECT_FALSE(pulled());
    scanned(dirty);
    EXPECT_EQ(harness.repository(0), dirty);
}

TEST_F(SyncRepo, DoesNotPullWithADetachedHead) {
    sync();
    GitRepository detached = behind("/r/a");
    detached.isDetachedHead = true;
    scanned(detached);
    EXPECT_FALSE(pulled());
}

TEST_F(SyncRepo, DoesNotPullWhatTheFetchShowsToBeDiverged) {
    sync();
    GitRepository diverged = repositoryAt("/r/a");
    diverged.syncStatus =
        GitSyncStatus::Diverged{.upstream = "origin/main", .ahead = 1, .behind = 1};
    scanned(diverged);
    EXPECT_FALSE(pulled());
}

TEST_F(SyncRepo, DoesNotPullWithAConfigurationInDisorder) {
    sync();
    GitRepository mismatched = behind("/r/a");
    mismatched.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    scanned(mismatched);
    EXPECT_FALSE(pulled());
}

TEST_F(SyncRepo, DoesNotPullWhatCouldNotBeScannedAfterTheFetch) {
    sync();
    scanned(std::nullopt);
    EXPECT_FALSE(pulled());
    scanned(behind("/r/a"));
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
}

TEST_F(SyncRepo, FailedFetchAndPullLeaveTheRepositoryBehind) {
    harness.gitAnswer = std::nullopt;
    sync();
    scanned(behind("/r/a"));
    scanned(behind("/r/a"));
    EXPECT_EQ(harness.repository(0), behind("/r/a"));
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
}

TEST_F(SyncRepo, FailedLastLookKeepsTheEntryAndEndsTheProgress) {
    sync();
    scanned(behind("/r/a"));
    scanned(std::nullopt);
    EXPECT_EQ(harness.repository(0), behind("/r/a"));
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
}

TEST_F(SyncRepo, CarriesIssuesOver) {
    GitRepository present = behind("/r/a");
    present.issues = {{.id = 1, .number = 1}};
    harness.makeShowing({present});
    sync();
    scanned(behind("/r/a"));
    scanned(upToDate("/r/a"));
    EXPECT_EQ(harness.repository(0).issues, present.issues);
}

TEST_F(SyncRepo, EndsWithACheckOfTheDependenciesPastWhatIsRemembered) {
    sync();
    scanned(behind("/r/a"));
    EXPECT_THAT(harness.dependencyScans, IsEmpty());
    scanned(upToDate("/r/a"));
    EXPECT_THAT(harness.dependencyScans, ElementsAre(Pair("/r/a", true)));
}

TEST_F(SyncRepo, FailedLastLookIsNotFollowedByACheckOfTheDependencies) {
    sync();
    scanned(behind("/r/a"));
    scanned(std::nullopt);
    EXPECT_THAT(harness.dependencyScans, IsEmpty());
}

TEST_F(SyncRepo, EntryRemovedMeanwhileIsNotBroughtBack) {
    sync();
    harness.scanner->setRepositories({});
    scanned(behind("/r/a"));
    scanned(upToDate("/r/a"));
    EXPECT_THAT(harness.scanner->repositories(), IsEmpty());
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
}

TEST_F(SyncRepo, RefreshQueuedMeanwhileIsNotRunAtItsEnd) {
    sync();
    harness.scanner->refreshGitForRepo("/r/a");
    scanned(behind("/r/a"));
    scanned(upToDate("/r/a"));
    EXPECT_EQ(harness.scannedPaths.size(), 2);
    EXPECT_THAT(state().gitScanInProgressForRepo, IsEmpty());
}

TEST_F(SyncRepo, PullsNothingWhenTheScannerHasGone) {
    sync();
    harness.scanner = nullptr;
    scanned(behind("/r/a"));
    EXPECT_FALSE(pulled());
}

}  // namespace
}  // namespace tarnbeck
