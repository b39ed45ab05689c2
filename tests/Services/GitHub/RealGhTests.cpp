#include <fmt/format.h>

#include "RealGhFixture.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

// An issue as GitHub's interface tells it.
std::string issueNode(int number, const std::string& author) {
    return fmt::format(
        R"({{"number":{},"title":"Issue \"{}\"","state":"OPEN","labels":{{"nodes":[{{"id":"l1",)"
        R"("name":"bug","description":"","color":"d73a4a"}},{{"id":"l2","name":"help wanted",)"
        R"("description":"","color":"008672"}}],"totalCount":2}},"author":{},)"
        R"("createdAt":"2026-02-01T08:00:00Z","updatedAt":"2026-02-02T09:00:00Z",)"
        R"("url":"https://localhost/owner/repo/issues/{}"}})",
        number, number, author, number);
}

std::string pullRequestNode(int number, bool isDraft) {
    return fmt::format(
        R"({{"number":{},"title":"Change","state":"OPEN","labels":{{"nodes":[],"totalCount":0}},)"
        R"("author":{{"login":"robot"}},"createdAt":"2026-02-01T08:00:00Z",)"
        R"("updatedAt":"2026-02-02T09:00:00Z","isDraft":{},)"
        R"("url":"https://localhost/owner/repo/pull/{}"}})",
        number, isDraft, number);
}

const std::string ann = R"({"login":"ann","id":"U1","name":"Ann"})";

class RealGh_Lists : public testing::RealGhFixture {};
class RealGh_Failures : public testing::RealGhFixture {
  protected:
    // Expects that the scan fails, and that each of its four runs of `gh` ended with these words.
    void expectFailure(const std::string& words) {
        trustingTheServer([&] {
            EXPECT_TRUE(scan().is<GitHubRepoScanResult::Failed>());
            EXPECT_THAT(lines(), SizeIs(4));
            EXPECT_THAT(lines(),
                        Each(AllOf(StartsWith("GITHUB FAIL(1) gh "),
                                   HasSubstr(" list for owner/repo — "), HasSubstr(words))));
        });
    }
};

TEST_F(RealGh_Lists, IssuesComeWithAllTheirFields) {
    serverHas("issues", {issueNode(7, ann)});
    startServer("lists");
    trustingTheServer([&] {
        const auto result = scan();
        ASSERT_TRUE(result.data()) << ::testing::PrintToString(lines());
        EXPECT_EQ(result.data()->issues,
                  (ImmutableList<GitHubIssue>{{.id = 7,
                                               .number = 7,
                                               .title = "Issue \"7\"",
                                               .state = "OPEN",
                                               .labels = {"bug", "help wanted"},
                                               .author = "ann",
                                               .createdAt = "2026-02-01T08:00:00Z",
                                               .updatedAt = "2026-02-02T09:00:00Z",
                                               .url = "https://localhost/owner/repo/issues/7"}}));
        EXPECT_THAT(lines(), IsEmpty());
    });
}

TEST_F(RealGh_Lists, PullRequestsComeWithTheirDraftFlagAndBots) {
    serverHas("pullRequests", {pullRequestNode(9, true), pullRequestNode(8, false)});
    startServer("lists");
    trustingTheServer([&] {
        const auto result = scan();
        ASSERT_TRUE(result.data()) << ::testing::PrintToString(lines());
        ASSERT_EQ(result.data()->pullRequests.size(), 2);
        EXPECT_EQ(result.data()->pullRequests[0],
                  (GitHubPullRequest{.id = 9,
                                     .number = 9,
                                     .title = "Change",
                                     .state = "OPEN",
                                     .author = "app/robot",
                                     .createdAt = "2026-02-01T08:00:00Z",
                                     .updatedAt = "2026-02-02T09:00:00Z",
                                     .isDraft = true,
                                     .url = "https://localhost/owner/repo/pull/9"}));
        EXPECT_FALSE(result.data()->pullRequests[1].isDraft);
    });
}

TEST_F(RealGh_Lists, IssueOfADeletedAccountIsKept) {
    serverHas("issues", {issueNode(7, "null")});
    startServer("lists");
    trustingTheServer([&] {
        const auto result = scan();
        ASSERT_TRUE(result.data()) << ::testing::PrintToString(lines());
        ASSERT_EQ(result.data()->issues.size(), 1);
        EXPECT_EQ(result.data()->issues[0].author, "app/");
    });
}

TEST_F(RealGh_Lists, Of150OpenIssuesTheNewestHundredCome) {
    std::vector<std::string> nodes;
    for (int number = 150; number > 0; --number) nodes.push_back(issueNode(number, ann));
    serverHas("issues", nodes);
    startServer("lists");
    trustingTheServer([&] {
        const auto result = scan();
        ASSERT_TRUE(result.data()) << ::testing::PrintToString(lines());
        ASSERT_EQ(result.data()->issues.size(), 100);
        EXPECT_EQ(result.data()->issues[0].number, 150);
        EXPECT_EQ(result.data()->issues[99].number, 51);
    });
}

TEST_F(RealGh_Lists, RepositoryWithoutAnyIsASuccess) {
    startServer("lists");
    trustingTheServer([&] {
        const auto result = scan();
        ASSERT_TRUE(result.data()) << ::testing::PrintToString(lines());
        EXPECT_EQ(*result.data(), GitHubRepositoryData{});
    });
}

TEST_F(RealGh_Failures, WithoutAuthenticationGhExitsWithFour) {
    EXPECT_TRUE(scan().is<GitHubRepoScanResult::Failed>());
    EXPECT_THAT(lines(), SizeIs(4));
    EXPECT_THAT(lines(), Each(AllOf(StartsWith("GITHUB FAIL(4) gh "), HasSubstr("gh auth login"))));
}

TEST_F(RealGh_Failures, RejectedTokenSays401) {
    startServer("unauthorized");
    expectFailure("HTTP 401: Bad credentials");
}

TEST_F(RealGh_Failures, ForbiddenRepositorySays403) {
    startServer("forbidden");
    expectFailure("HTTP 403: API rate limit exceeded");
}

TEST_F(RealGh_Failures, AnswerThatBreaksOffIsNone) {
    serverHas("issues", {issueNode(7, ann)});
    startServer("cut-off");
    expectFailure("unexpected EOF");
}

TEST_F(RealGh_Failures, AnswerInHtmlIsNone) {
    startServer("html");
    expectFailure("invalid character '<'");
}

TEST_F(RealGh_Failures, HostThatRefusesConnectionsSaysSo) {
    startServer("lists");
    stopServer();
    expectFailure("connect");
}

TEST_F(RealGh_Failures, RepositoryThatIsGoneSaysSo) {
    startServer("lists");
    trustingTheServer([&] {
        EXPECT_TRUE(scan("owner/gone").is<GitHubRepoScanResult::Failed>());
        EXPECT_THAT(lines(), Each(HasSubstr("Could not resolve to a Repository with the name "
                                            "'owner/gone'")));
        EXPECT_THAT(lines(), SizeIs(4));
    });
}

TEST_F(RealGh_Failures, RepositoryWithIssuesTurnedOffFailsForItsIssuesAlone) {
    startServer("issues-off");
    const std::string line =
        "GITHUB FAIL(1) gh issue list for owner/repo — the 'owner/repo' "
        "repository has disabled issues";
    trustingTheServer([&] {
        EXPECT_TRUE(scan().is<GitHubRepoScanResult::Failed>());
        EXPECT_THAT(lines(), ElementsAre(line, line));
    });
}

TEST_F(RealGh_Failures, ServerThatNeverAnswersIsTimedOut) {
    startServer("silent");
    timeouts_.run = 300ms;
    trustingTheServer([&] {
        EXPECT_TRUE(scan().is<GitHubRepoScanResult::Failed>());
        EXPECT_THAT(lines(), ElementsAre("GITHUB TIMEOUT gh issue list for owner/repo",
                                         "GITHUB TIMEOUT gh issue list for owner/repo",
                                         "GITHUB TIMEOUT gh pr list for owner/repo",
                                         "GITHUB TIMEOUT gh pr list for owner/repo"));
    });
}

}  // namespace
}  // namespace tarnbeck
