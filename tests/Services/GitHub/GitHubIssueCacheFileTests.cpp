#include <filesystem>

#include <sys/stat.h>

#include "GitHubIssueCacheFixture.h"
#include "MachineRights.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using testing::dataWith;
using ::testing::IsEmpty;
using testing::WithoutRootRights;

class GitHubIssueCache_Loading : public testing::GitHubIssueCacheFixture {};
class GitHubIssueCache_Writing : public testing::GitHubIssueCacheFixture {};
class GitHubIssueCache_FailedWriting : public testing::GitHubIssueCacheFixture {
  protected:
    void storeAndWrite(const GitHubRepositoryData& data) {
        cache().store(data, "/repo");
        cache().drain();
    }
};

mode_t modeOf(const std::string& path) {
    struct stat information {};
    stat(path.c_str(), &information);
    return information.st_mode & 07777;
}

TEST_F(GitHubIssueCache_Loading, GivesTheEntriesOfTheRunBefore) {
    cache().store(dataWith(2, 1), "/repo");
    const auto stored = cache().entry("/repo");
    restart();
    EXPECT_EQ(cache().entry("/repo"), stored);
}

TEST_F(GitHubIssueCache_Loading, MissingFileIsAnEmptyCacheWithoutAWord) {
    EXPECT_EQ(cache().entry("/repo"), std::nullopt);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitHubIssueCache_Loading, BrokenFileIsAnEmptyCacheWithoutAWord) {
    for (const char* content :
         {"", R"({"/repo":{"fetchedAt":5)", "[]", R"({"/repo":{"fetchedAt":5},"/other":{}})"}) {
        write(content);
        restart();
        EXPECT_EQ(cache().entry("/repo"), std::nullopt) << content;
    }
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitHubIssueCache_Loading, UnreadableFileIsAnEmptyCacheWithoutAWord) {
    write(R"({"/repo":{"fetchedAt":5}})");
    ASSERT_EQ(chmod(file().c_str(), 0), 0);
    const WithoutRootRights rights;
    EXPECT_EQ(cache().entry("/repo"), std::nullopt);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitHubIssueCache_Loading, FolderInPlaceOfTheFileIsAnEmptyCache) {
    home_.makeFolder("cache/github-issues-cache.json");
    EXPECT_EQ(cache().entry("/repo"), std::nullopt);
}

TEST_F(GitHubIssueCache_Loading, HappensAtTheFirstTouchAndNotBefore) {
    write(R"({"/repo":{"fetchedAt":5}})");
    EXPECT_TRUE(cache().entry("/repo"));
}

TEST_F(GitHubIssueCache_Loading, HappensOnce) {
    EXPECT_EQ(cache().entry("/repo"), std::nullopt);
    write(R"({"/repo":{"fetchedAt":5}})");
    EXPECT_EQ(cache().entry("/repo"), std::nullopt);
}

TEST_F(GitHubIssueCache_Loading, StoreKeepsTheOtherEntriesOfTheFile) {
    write(R"({"/other":{"fetchedAt":5}})");
    cache().store(dataWith(1, 0), "/repo");
    restart();
    EXPECT_TRUE(cache().entry("/other"));
    EXPECT_TRUE(cache().entry("/repo"));
}

TEST_F(GitHubIssueCache_Loading, BrokenFileIsReplacedByTheNextStore) {
    write("rubbish");
    cache().store(dataWith(1, 0), "/repo");
    restart();
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(1, 0));
}

TEST_F(GitHubIssueCache_Writing, LeavesAnObjectByPathWithSecondsSince2001) {
    cache().store({}, "/repo");
    cache().drain();
    EXPECT_EQ(contentOf(file()),
              R"({"/repo":{"issues":[],"pullRequests":[],"fetchedAt":794059200}})");
}

TEST_F(GitHubIssueCache_Writing, FileIsForTheUserAloneAndSoIsItsFolder) {
    cache().store({}, "/repo");
    cache().drain();
    EXPECT_EQ(modeOf(file()), 0600);
    EXPECT_EQ(modeOf(home_ / "cache"), 0700);
}

TEST_F(GitHubIssueCache_Writing, NothingElseIsLeftInTheFolder) {
    for (int count = 1; count < 4; ++count) {
        cache().store(dataWith(count, 0), "/repo");
        cache().drain();
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(home_ / "cache"), {}), 1);
}

TEST_F(GitHubIssueCache_Writing, FolderThatGoesAwayIsMadeAgain) {
    cache().store(dataWith(1, 0), "/repo");
    cache().drain();
    fs::remove_all(home_ / "cache");
    cache().store(dataWith(2, 0), "/repo");
    restart();
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(2, 0));
}

TEST_F(GitHubIssueCache_FailedWriting, FileInPlaceOfTheFolderLosesNothingInMemory) {
    home_.write("cache", "in the way");
    storeAndWrite(dataWith(1, 0));
    EXPECT_EQ(contentOf(home_ / "cache"), "in the way");
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(1, 0));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitHubIssueCache_FailedWriting, FolderThatMayNotBeWrittenKeepsTheOldFile) {
    storeAndWrite(dataWith(1, 0));
    const std::string old = contentOf(file());
    ASSERT_EQ(chmod((home_ / "cache").c_str(), 0500), 0);
    {
        const WithoutRootRights rights;
        storeAndWrite(dataWith(2, 0));  // on this thread
    }
    ASSERT_EQ(chmod((home_ / "cache").c_str(), 0700), 0);
    EXPECT_EQ(contentOf(file()), old);
    EXPECT_EQ(cache().entry("/repo")->data, dataWith(2, 0));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitHubIssueCache_FailedWriting, NextStoreWritesWhatCouldNotBeWritten) {
    home_.write("cache", "in the way");
    cache().store(dataWith(1, 0), "/lost");
    cache().drain();
    fs::remove(home_ / "cache");
    storeAndWrite(dataWith(2, 0));
    restart();
    EXPECT_EQ(cache().entry("/lost")->data, dataWith(1, 0));
}

TEST_F(GitHubIssueCache_FailedWriting, FullDiskKeepsTheOldFileAndNothingElse) {
    home_.makeFolder("cache");
    const auto reason = testing::runOnSmallDisk(home_ / "cache", 64 * 1024, [&] {
        storeAndWrite(dataWith(1, 0));
        storeAndWrite(dataWith(1000, 0));
        EXPECT_EQ(cache().entry("/repo")->data, dataWith(1000, 0));
        EXPECT_EQ(std::distance(fs::directory_iterator(home_ / "cache"), {}), 1);
        EXPECT_THAT(lines(), IsEmpty());
        restart();
        EXPECT_EQ(cache().entry("/repo")->data, dataWith(1, 0));
    });
    if (reason) GTEST_SKIP() << "This machine can't mount a small disk for a test: " << *reason;
}

}  // namespace
}  // namespace tarnbeck
