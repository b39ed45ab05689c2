#include "GitHubScanner.h"

namespace tarnbeck {
namespace {

std::optional<std::string> parseOwnerRepo(std::string_view url) {
    return GitHubScanner::parseOwnerRepo(url);
}

TEST(ParseOwnerRepo, ReadsTheHttpsForm) {
    EXPECT_EQ(parseOwnerRepo("https://github.com/owner/repo.git"), "owner/repo");
}

TEST(ParseOwnerRepo, ReadsTheFormOfSsh) {
    EXPECT_EQ(parseOwnerRepo("git@github.com:owner/repo.git"), "owner/repo");
}

TEST(ParseOwnerRepo, ReadsAnSshUrl) {
    EXPECT_EQ(parseOwnerRepo("ssh://git@github.com/owner/repo"), "owner/repo");
}

TEST(ParseOwnerRepo, BlanksAndNewlinesAroundAreTrimmed) {
    EXPECT_EQ(parseOwnerRepo(" \t\u00A0https://github.com/owner/repo\u2028\r\n"), "owner/repo");
}

TEST(ParseOwnerRepo, KeepsTheCaseOfTheName) {
    EXPECT_EQ(parseOwnerRepo("https://github.com/Owner/Repo"), "Owner/Repo");
}

TEST(ParseOwnerRepo, SlashAfterTheHostComesBeforeAColon) {
    EXPECT_EQ(parseOwnerRepo("github.com:a/b/github.com/owner/repo"), "owner/repo");
}

TEST(ParseOwnerRepo, TakesWhatFollowsTheFirstOccurrence) {
    EXPECT_EQ(parseOwnerRepo("https://github.com/owner/github.com/repo"), "owner/github.com");
    EXPECT_EQ(parseOwnerRepo("git@github.com:owner/github.com:repo"), "owner/github.com:repo");
}

TEST(ParseOwnerRepo, OtherHostsGiveNothing) {
    for (const char* url : {"https://gitlab.com/owner/repo", "git@example.com:owner/repo.git",
                            "/srv/git/owner/repo.git", "https://github.company.com/owner/repo",
                            "https://GitHub.com/owner/repo", ""}) {
        EXPECT_EQ(parseOwnerRepo(url), std::nullopt) << url;
    }
}

TEST(ParseOwnerRepo, HostWithoutASeparatorBehindItGivesNothing) {
    EXPECT_EQ(parseOwnerRepo("https://github.com"), std::nullopt);
    EXPECT_EQ(parseOwnerRepo("https://github.com.evil/owner/repo"), std::nullopt);
}

TEST(ParseOwnerRepo, EveryDotGitIsDeleted) {
    EXPECT_EQ(parseOwnerRepo("https://github.com/owner/my.gitter.git"), "owner/myter");
    EXPECT_EQ(parseOwnerRepo("https://github.com/own.giter/repo"), "owner/repo");
}

TEST(ParseOwnerRepo, RepositoryNamedDotGithubLosesItsBeginning) {
    EXPECT_EQ(parseOwnerRepo("https://github.com/owner/.github"), "owner/hub");
}

TEST(ParseOwnerRepo, DeletionIsNotRepeatedOnWhatItJoins) {
    EXPECT_EQ(parseOwnerRepo("https://github.com/owner/a.g.gitit"), "owner/a.git");
}

TEST(ParseOwnerRepo, NameThatIsOnlyDotGitGivesNothing) {
    EXPECT_EQ(parseOwnerRepo("https://github.com/owner/.git"), std::nullopt);
}

TEST(ParseOwnerRepo, SlashesAroundAndDoubledOnesDoNotCount) {
    EXPECT_EQ(parseOwnerRepo("https://github.com//owner//repo/"), "owner/repo");
}

TEST(ParseOwnerRepo, FewerThanTwoPiecesGiveNothing) {
    EXPECT_EQ(parseOwnerRepo("https://github.com/"), std::nullopt);
    EXPECT_EQ(parseOwnerRepo("https://github.com/owner/"), std::nullopt);
}

TEST(ParseOwnerRepo, FurtherPiecesAreIgnored) {
    EXPECT_EQ(parseOwnerRepo("https://github.com/owner/repo/tree/main"), "owner/repo");
}

}  // namespace
}  // namespace tarnbeck
