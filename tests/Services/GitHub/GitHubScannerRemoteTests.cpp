// Which repository on GitHub a local one is.
#include "GitHubScannerFixture.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class GitHubScanner_OwnerRepo : public testing::GitHubScannerFixture {
  protected:
    std::optional<std::string> ownerRepo() { return scanner().gitHubOwnerRepo("/repo"); }
};

TEST_F(GitHubScanner_OwnerRepo, IsReadFromTheRemoteOrigin) {
    EXPECT_EQ(ownerRepo(), "owner/repo");
    ASSERT_EQ(gitInvocations_.size(), 1);
    const GitInvocation& invocation = gitInvocations_[0];
    EXPECT_THAT(invocation.executableArgs,
                ElementsAre("-C", "/repo", "remote", "get-url", "origin"));
    EXPECT_THAT(invocation.logicalArgs, ElementsAre("remote", "get-url", "origin"));
    EXPECT_EQ(invocation.logRepoPath, "/repo");
    EXPECT_EQ(invocation.timeout, 15s);
    EXPECT_FALSE(invocation.allowEmpty);
}

TEST_F(GitHubScanner_OwnerRepo, HttpsRemoteWithDotGitAndASlashGivesThePlainName) {
    remote_ = "https://github.com/owner/repo.git/";
    EXPECT_EQ(ownerRepo(), "owner/repo");
}

TEST_F(GitHubScanner_OwnerRepo, ScpLikeRemoteWithDotGitGivesThePlainName) {
    remote_ = "git@github.com:owner/repo.git";
    EXPECT_EQ(ownerRepo(), "owner/repo");
}

TEST_F(GitHubScanner_OwnerRepo, SshUrlGivesThePlainName) {
    remote_ = "ssh://git@github.com/owner/repo.git";
    EXPECT_EQ(ownerRepo(), "owner/repo");
}

TEST_F(GitHubScanner_OwnerRepo, OnceFoundItIsNeverAskedForAgain) {
    ownerRepo();
    remote_ = "https://github.com/owner/renamed.git";
    EXPECT_EQ(ownerRepo(), "owner/repo");
    EXPECT_EQ(gitInvocations_.size(), 1);
}

TEST_F(GitHubScanner_OwnerRepo, IsKeptForEachPathByItself) {
    ownerRepo();
    remote_ = "https://github.com/owner/other.git";
    EXPECT_EQ(scanner().gitHubOwnerRepo("/other"), "owner/other");
    EXPECT_EQ(ownerRepo(), "owner/repo");
}

TEST_F(GitHubScanner_OwnerRepo, MissingOriginGivesNothingAndIsAskedForAgain) {
    remote_ = std::nullopt;
    EXPECT_EQ(ownerRepo(), std::nullopt);
    remote_ = "https://github.com/owner/repo.git";
    EXPECT_EQ(ownerRepo(), "owner/repo");
}

TEST_F(GitHubScanner_OwnerRepo, RemoteThatNamesOnlyAnOwnerGivesNothingAndIsAskedForAtEachScan) {
    remote_ = "https://github.com/owner";
    EXPECT_EQ(inShort(scan()), "skipped");
    EXPECT_EQ(inShort(scan()), "skipped");
    EXPECT_EQ(gitInvocations_.size(), 2);
}

TEST_F(GitHubScanner_OwnerRepo, WithoutOneTheScanIsSkippedWithoutAWordAndGhIsNotRun) {
    for (const auto& remote : {std::optional<std::string>(),
                               std::optional<std::string>("https://gitlab.com/owner/repo.git")}) {
        remote_ = remote;
        EXPECT_EQ(inShort(scan(forceRefresh)), "skipped");
    }
    EXPECT_EQ(gh_.calls("issue") + gh_.calls("pr"), 0);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitHubScanner_OwnerRepo, WithoutOneEvenAYoungAnswerIsNotGiven) {
    ghLists(1, 1);
    scan();
    restart();
    remote_ = std::nullopt;
    EXPECT_EQ(inShort(scan()), "skipped");
}

}  // namespace
}  // namespace tarnbeck
