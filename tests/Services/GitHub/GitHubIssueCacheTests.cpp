#include <chrono>
#include <thread>

#include "GitHubIssueCacheFixture.h"
#include "ThreadedWorkQueues.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using testing::dataWith;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class GitHubIssueCache_Entries : public testing::GitHubIssueCacheFixture {};
class GitHubIssueCache_Age : public testing::GitHubIssueCacheFixture {};
class GitHubIssueCache_Guard : public testing::GitHubIssueCacheFixture {};
class GitHubIssueCache_Waiting : public testing::GitHubIssueCacheFixture {};
class GitHubIssueCache_Threads : public testing::GitHubIssueCacheFixture {};

TEST_F(GitHubIssueCache_Entries, UnknownPathHasNone) {
    EXPECT_EQ(cache().entry("/repo"), std::nullopt);
    EXPECT_EQ(cache().cachedData("/repo"), std::nullopt);
}

TEST_F(GitHubIssueCache_Entries, StoredDataIsThereAtOnceWithItsTime) {
    cache().store(dataWith(2, 1), "/repo");
    const auto entry = cache().entry("/repo");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->data, dataWith(2, 1));
    EXPECT_EQ(entry->fetchedAt, simulation_.loop.wallNow());
}

TEST_F(GitHubIssueCache_Entries, LaterDataReplacesTheEarlier) {
    cache().store(dataWith(2, 1), "/repo");
    advance(5s);
    cache().store(dataWith(1, 1), "/repo");
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(1, 1));
    EXPECT_EQ(cache().entry("/repo")->fetchedAt, simulation_.loop.wallNow());
}

TEST_F(GitHubIssueCache_Entries, PathsDoNotMeet) {
    cache().store(dataWith(2, 1), "/one");
    cache().store(dataWith(0, 3), "/two");
    EXPECT_EQ(cache().entry("/one")->data, dataWith(2, 1));
    EXPECT_EQ(cache().entry("/two")->data, dataWith(0, 3));
}

TEST_F(GitHubIssueCache_Age, EntryOf899SecondsAnswers) {
    cache().store(dataWith(1, 0), "/repo");
    advance(899s);
    EXPECT_EQ(cache().cachedData("/repo"), dataWith(1, 0));
}

TEST_F(GitHubIssueCache_Age, EntryOf900SecondsIsTooOldAndStays) {
    cache().store(dataWith(1, 0), "/repo");
    advance(900s);
    EXPECT_EQ(cache().cachedData("/repo"), std::nullopt);
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(1, 0));
}

TEST_F(GitHubIssueCache_Age, EntryFromATimeToComeAnswersBecauseTheClockWasTurnedBack) {
    cache().store(dataWith(1, 0), "/repo");
    simulation_.loop.setWallTime(simulation_.loop.wallNow() - 24h);
    EXPECT_EQ(cache().cachedData("/repo"), dataWith(1, 0));
}

TEST_F(GitHubIssueCache_Age, EntryFromTheEdgeOfTimeAnswers) {
    write(R"({"/repo":{"fetchedAt":1e300}})");
    EXPECT_NE(cache().cachedData("/repo"), std::nullopt);
}

TEST_F(GitHubIssueCache_Age, EntryFromTheDawnOfTimeIsTooOld) {
    write(R"({"/repo":{"fetchedAt":-1e300}})");
    EXPECT_EQ(cache().cachedData("/repo"), std::nullopt);
}

TEST_F(GitHubIssueCache_Guard, TwoEmptyListsDoNotReplaceContentAndTheLogSaysSo) {
    cache().store(dataWith(2, 1), "/repo");
    const auto before = cache().entry("/repo");
    advance(5s);
    cache().store({}, "/repo");
    EXPECT_EQ(cache().entry("/repo"), before);
    EXPECT_THAT(lines(), ElementsAre("ISSUES CACHE GUARD: not caching empty result for /repo (had "
                                     "2 issues, 1 PRs)"));
}

TEST_F(GitHubIssueCache_Guard, IssuesAloneAreContent) {
    cache().store(dataWith(1, 0), "/repo");
    cache().store({}, "/repo");
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(1, 0));
    EXPECT_THAT(lines(), ElementsAre("ISSUES CACHE GUARD: not caching empty result for /repo (had "
                                     "1 issues, 0 PRs)"));
}

TEST_F(GitHubIssueCache_Guard, PullRequestsAloneAreContent) {
    cache().store(dataWith(0, 1), "/repo");
    cache().store({}, "/repo");
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(0, 1));
    EXPECT_THAT(lines(), ElementsAre("ISSUES CACHE GUARD: not caching empty result for /repo (had "
                                     "0 issues, 1 PRs)"));
}

TEST_F(GitHubIssueCache_Guard, ContentThatIsTooOldIsGuardedToo) {
    cache().store(dataWith(1, 0), "/repo");
    advance(24h);
    cache().store({}, "/repo");
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(1, 0));
}

TEST_F(GitHubIssueCache_Guard, ContentOfAnEarlierRunIsGuardedToo) {
    write(R"({"/repo":{"pullRequests":[{"id":1,"number":1,"title":"t","state":"OPEN","labels":[],)"
          R"("author":"","createdAt":"","isDraft":false,"url":"u"}],"fetchedAt":5}})");
    cache().store({}, "/repo");
    EXPECT_EQ(cache().entry("/repo")->data.pullRequests.size(), 1);
}

TEST_F(GitHubIssueCache_Guard, RefusedDataIsNotWritten) {
    cache().store(dataWith(2, 1), "/repo");
    simulation_.runUntilIdle();
    std::filesystem::remove(file());
    cache().store({}, "/repo");
    simulation_.runUntilIdle();
    EXPECT_FALSE(fileExists());
}

TEST_F(GitHubIssueCache_Guard, OneEmptyListOfTwoIsStored) {
    cache().store(dataWith(2, 1), "/repo");
    cache().store(dataWith(0, 1), "/repo");
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(0, 1));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitHubIssueCache_Guard, EmptyDataIsStoredWhereThereWasNoneAndRenewedEachTime) {
    cache().store({}, "/repo");
    ASSERT_TRUE(cache().entry("/repo"));
    advance(5s);
    cache().store({}, "/repo");
    EXPECT_EQ(cache().entry("/repo")->fetchedAt, simulation_.loop.wallNow());
    EXPECT_EQ(cache().entry("/repo")->data, GitHubRepositoryData{});
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitHubIssueCache_Waiting, StoreReturnsBeforeTheFileIsWritten) {
    cache().store(dataWith(1, 0), "/repo");
    EXPECT_FALSE(fileExists());
    simulation_.runUntilIdle();
    EXPECT_TRUE(fileExists());
}

TEST_F(GitHubIssueCache_Waiting, StoresThatWaitAreWrittenOnceForAllInTheirLatestState) {
    for (int count = 1; count <= 200; ++count) cache().store(dataWith(count, 0), "/repo");
    cache().store(dataWith(1, 1), "/other");
    EXPECT_TRUE(simulation_.queues.runOne());
    EXPECT_FALSE(simulation_.queues.runOne());
    restart();
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(200, 0));
    EXPECT_EQ(cache().entry("/other")->data, dataWith(1, 1));
}

TEST_F(GitHubIssueCache_Waiting, StoreAfterAWritingIsWrittenToo) {
    cache().store(dataWith(1, 0), "/repo");
    simulation_.runUntilIdle();
    cache().store(dataWith(2, 0), "/repo");
    simulation_.runUntilIdle();
    restart();
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(2, 0));
}

TEST_F(GitHubIssueCache_Waiting, DrainWritesWhatWaits) {
    cache().store(dataWith(1, 0), "/repo");
    cache().drain();
    EXPECT_TRUE(fileExists());
}

TEST_F(GitHubIssueCache_Waiting, EndOfTheCacheWritesWhatWaits) {
    cache().store(dataWith(1, 0), "/repo");
    cache_.reset();
    EXPECT_TRUE(fileExists());
}

TEST_F(GitHubIssueCache_Waiting, ReadingAloneWritesNothing) {
    cache().entry("/repo");
    cache().cachedData("/repo");
    simulation_.runUntilIdle();
    EXPECT_FALSE(fileExists());
}

TEST_F(GitHubIssueCache_Threads, ManyWhoStoreAndReadAtOnceDoNotMeet) {
    write(R"({"/0":{"fetchedAt":5}})");
    ThreadedWorkQueues queues;
    GitHubIssueCache shared(file(), {.log = log_.log, .clock = simulation_.loop, .queues = queues});
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&, path = "/" + std::to_string(thread)] {
            EXPECT_EQ(shared.entry("/0").has_value(), true);
            for (int count = 1; count <= 25; ++count) {
                shared.store(dataWith(count, count), path);
                EXPECT_EQ(shared.entry(path)->data, dataWith(count, count));
                shared.entry("/0");
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    shared.drain();
    restart();
    for (int thread = 0; thread < 8; ++thread) {
        EXPECT_EQ(cache().entry("/" + std::to_string(thread))->data, dataWith(25, 25));
    }
}

}  // namespace
}  // namespace tarnbeck
