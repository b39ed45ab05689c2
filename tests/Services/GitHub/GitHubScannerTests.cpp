#include <filesystem>
#include <thread>

#include "GitHubScannerFixture.h"
#include "ThreadedWorkQueues.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class GitHubScanner_Scan : public testing::GitHubScannerFixture {};
class GitHubScanner_Policy : public testing::GitHubScannerFixture {};
class GitHubScanner_LastKnown : public testing::GitHubScannerFixture {};
class GitHubScanner_ClosedItems : public testing::GitHubScannerFixture {};
class GitHubScanner_CacheFile : public testing::GitHubScannerFixture {};
class GitHubScanner_Threads : public testing::GitHubScannerFixture {};

TEST_F(GitHubScanner_Scan, GivesTheIssuesAndPullRequestsThatGhLists) {
    gh_.plays("issue", "print", "[" + testing::ghIssue(7, "Crash") + "]");
    gh_.plays("pr", "print", "[" + testing::ghPullRequest(8, "Fix", true) + "]");
    const auto result = scan();
    ASSERT_TRUE(result.data());
    EXPECT_EQ(result.data()->issues,
              (ImmutableList<GitHubIssue>{{.id = 7,
                                           .number = 7,
                                           .title = "Crash",
                                           .state = "OPEN",
                                           .labels = {"bug"},
                                           .author = "ann",
                                           .createdAt = "2026-02-01T08:00:00Z",
                                           .updatedAt = "2026-02-02T09:00:00Z",
                                           .url = "https://github.com/owner/repo/issues/7"}}));
    EXPECT_EQ(result.data()->pullRequests,
              (ImmutableList<GitHubPullRequest>{{.id = 8,
                                                 .number = 8,
                                                 .title = "Fix",
                                                 .state = "OPEN",
                                                 .author = "app/robot",
                                                 .createdAt = "2026-02-01T08:00:00Z",
                                                 .updatedAt = "2026-02-02T09:00:00Z",
                                                 .isDraft = true,
                                                 .url = "https://github.com/owner/repo/pull/8"}}));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitHubScanner_Scan, AsksForTheIssuesWithTheseFields) {
    scan();
    EXPECT_THAT(gh_.seen("issue", 1),
                HasSubstr("argument=issue\nargument=list\nargument=--repo\nargument=owner/repo\n"
                          "argument=--state=open\nargument=--json\nargument=number,title,state,"
                          "labels,author,createdAt,updatedAt,url\nargument=--limit\nargument=100\n"
                          "environment="));
}

TEST_F(GitHubScanner_Scan, AsksForThePullRequestsWithTheseFields) {
    scan();
    EXPECT_THAT(gh_.seen("pr", 1),
                HasSubstr("argument=pr\nargument=list\nargument=--repo\nargument=owner/repo\n"
                          "argument=--state=open\nargument=--json\nargument=number,title,state,"
                          "labels,author,createdAt,updatedAt,isDraft,url\nargument=--limit\n"
                          "argument=100\nenvironment="));
}

TEST_F(GitHubScanner_Scan, RunsGhOnceForEachListAndPausesNowhere) {
    scan();
    EXPECT_EQ(gh_.calls("issue"), 1);
    EXPECT_EQ(gh_.calls("pr"), 1);
    EXPECT_THAT(pauses_, IsEmpty());
}

TEST_F(GitHubScanner_Scan, OfManyOpenIssuesTheHundredThatGhListsAreGiven) {
    ghLists(100, 0);  // of 150
    EXPECT_EQ(inShort(scan()), "100+0");
}

TEST_F(GitHubScanner_Scan, RubbishOfGhIsARepositoryWithoutIssues) {
    gh_.plays("issue", "print", "<html>not what was asked for</html>");
    gh_.plays("pr", "print", testing::ghPullRequests(1));
    EXPECT_EQ(inShort(scan()), "0+1");
}

TEST_F(GitHubScanner_Policy, YoungAnswerComesFromTheCacheAndGhIsNotRun) {
    ghLists(2, 1);
    scan();
    ghLists(5, 5);
    advance(899s);
    EXPECT_EQ(inShort(scan(useCache)), "2+1");
    EXPECT_EQ(gh_.calls("issue"), 1);
}

TEST_F(GitHubScanner_Policy, At900SecondsGhIsRunAgain) {
    ghLists(2, 1);
    scan();
    ghLists(5, 5);
    advance(900s);
    EXPECT_EQ(inShort(scan(useCache)), "5+5");
    EXPECT_EQ(gh_.calls("issue"), 2);
}

TEST_F(GitHubScanner_Policy, ForcedScanAlwaysRunsGh) {
    ghLists(2, 1);
    scan(forceRefresh);
    ghLists(5, 5);
    EXPECT_EQ(inShort(scan(forceRefresh)), "5+5");
}

TEST_F(GitHubScanner_Policy, ForcedScanIsKeptForThoseThatAreNot) {
    ghLists(2, 1);
    scan(forceRefresh);
    EXPECT_EQ(inShort(scan(useCache)), "2+1");
    EXPECT_EQ(gh_.calls("issue"), 1);
}

TEST_F(GitHubScanner_Policy, CacheIsUsedUnlessToldOtherwise) {
    EXPECT_EQ(GitHubScanner::ScanRequest{.at = "/repo"}.policy, useCache);
}

TEST_F(GitHubScanner_LastKnown, NothingIsKnownOfARepositoryNeverScanned) {
    EXPECT_EQ(scanner().lastKnownIssues("/repo"), std::nullopt);
    EXPECT_EQ(scanner().lastKnownPullRequests("/repo"), std::nullopt);
    EXPECT_EQ(scanner().lastKnownIssueFetchDate("/repo"), std::nullopt);
}

TEST_F(GitHubScanner_LastKnown, ListsAndTheirTimeStayHoweverOld) {
    ghLists(2, 1);
    scan();
    const auto fetchedAt = now();
    advance(24h * 365);
    EXPECT_EQ(scanner().lastKnownIssues("/repo")->size(), 2);
    EXPECT_EQ(scanner().lastKnownPullRequests("/repo")->size(), 1);
    EXPECT_EQ(scanner().lastKnownIssueFetchDate("/repo"), fetchedAt);
}

TEST_F(GitHubScanner_LastKnown, ListsOfTheRunBeforeAreThereBeforeAnyScan) {
    ghLists(2, 1);
    scan();
    restart();
    EXPECT_EQ(scanner().lastKnownIssues("/repo")->size(), 2);
    EXPECT_EQ(scanner().lastKnownPullRequests("/repo")->size(), 1);
    EXPECT_EQ(gh_.calls("issue"), 1);
}

TEST_F(GitHubScanner_LastKnown, AnswerOfTheRunBeforeServesAScanToo) {
    ghLists(2, 1);
    scan();
    restart();
    EXPECT_EQ(inShort(scan(useCache)), "2+1");
    EXPECT_EQ(gh_.calls("issue"), 1);
}

TEST_F(GitHubScanner_LastKnown, EmptyRepositoryHasKnownEmptyLists) {
    scan();
    ASSERT_TRUE(scanner().lastKnownIssues("/repo"));
    EXPECT_TRUE(scanner().lastKnownIssues("/repo")->empty());
    EXPECT_EQ(scanner().lastKnownIssueFetchDate("/repo"), now());
}

TEST_F(GitHubScanner_LastKnown, EmptyRepositoryIsRenewedWithEachScan) {
    scan();
    advance(1000s);
    scan();
    EXPECT_EQ(scanner().lastKnownIssueFetchDate("/repo"), now());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitHubScanner_ClosedItems, ScanGivesTheEmptyListsAndTheCacheKeepsTheOldOnes) {
    ghLists(2, 1);
    scan();
    const auto fetchedAt = now();
    ghLists(0, 0);
    advance(5s);
    EXPECT_EQ(inShort(scan(forceRefresh)), "0+0");
    EXPECT_EQ(scanner().lastKnownIssues("/repo")->size(), 2);
    EXPECT_EQ(scanner().lastKnownIssueFetchDate("/repo"), fetchedAt);
    EXPECT_EQ(inShort(scan(useCache)), "2+1");
}

TEST_F(GitHubScanner_ClosedItems, TheLogSaysWhatWasKept) {
    ghLists(2, 1);
    scan();
    ghLists(0, 0);
    scan(forceRefresh);
    EXPECT_THAT(lines(), ElementsAre("ISSUES CACHE GUARD: not caching empty result for /repo (had "
                                     "2 issues, 1 PRs)"));
}

TEST_F(GitHubScanner_ClosedItems, RubbishDoesNotEmptyTheCache) {
    ghLists(2, 1);
    scan();
    gh_.plays("issue", "print", "rubbish");
    gh_.plays("pr", "print", "rubbish");
    EXPECT_EQ(inShort(scan(forceRefresh)), "0+0");
    EXPECT_EQ(scanner().lastKnownIssues("/repo")->size(), 2);
}

TEST_F(GitHubScanner_CacheFile, LiesBelowTheHome) {
    scan();
    scanner().drain();
    EXPECT_TRUE(std::filesystem::exists(gh_.home() + "/.config/tarnbeck/github-issues-cache.json"));
}

TEST_F(GitHubScanner_CacheFile, LiesWhereItIsToldTo) {
    options_.cacheFileURLOverride = log_.folder / "elsewhere/cache.json";
    scan();
    scanner().drain();
    EXPECT_TRUE(std::filesystem::exists(log_.folder / "elsewhere/cache.json"));
    EXPECT_FALSE(std::filesystem::exists(gh_.home() + "/.config"));
}

TEST_F(GitHubScanner_CacheFile, LosesAllEntriesWhenOneHasNoTime) {
    gh_.plays("issue", "fail 1");
    gh_.plays("pr", "fail 1");
    options_.cacheFileURLOverride =
        log_.folder.write("cache.json", R"({"/repo":{"fetchedAt":794059200},"/other":{}})");
    EXPECT_EQ(scanner().lastKnownIssues("/repo"), std::nullopt);
    EXPECT_EQ(inShort(scan()), "failed");
}

TEST_F(GitHubScanner_CacheFile, CorruptOneStartsEmptyAndIsOverwrittenByTheNextStore) {
    options_.cacheFileURLOverride = log_.folder.write("cache.json", "{\"/repo\":");
    ghLists(2, 1);
    EXPECT_EQ(inShort(scan()), "2+1");
    EXPECT_THAT(lines(), IsEmpty());
    restart();
    EXPECT_EQ(scanner().lastKnownIssues("/repo")->size(), 2);
}

TEST_F(GitHubScanner_Threads, ScansOfManyRepositoriesAtOnceDoNotMeet) {
    ghLists(2, 1);
    ThreadedWorkQueues queues;
    GitHubScanner shared(options_, {.launcher = launcher_,
                                    .git =
                                        [](const GitInvocation& invocation) {
                                            return "https://github.com/owner" +
                                                   invocation.logRepoPath;
                                        },
                                    .log = log_.log,
                                    .clock = simulation_.loop,
                                    .queues = queues});
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&, path = "/repo" + std::to_string(thread)] {
            EXPECT_EQ(inShort(shared.scan({.at = path, .policy = forceRefresh})), "2+1");
            EXPECT_EQ(shared.gitHubOwnerRepo(path), "owner" + path);
            EXPECT_EQ(shared.lastKnownIssues(path)->size(), 2);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace tarnbeck
