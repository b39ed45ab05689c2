#include "IssueReport.h"
#include "Json.h"
#include "Snapshots.h"

namespace tarnbeck::cli {
namespace {

using testing::noon;

const GitHubIssue rain{.id = 12,
                       .number = 12,
                       .title = "Rain is wet",
                       .labels = {"bug", "help wanted"},
                       .author = "alice",
                       .createdAt = "2026-02-03T04:05:06Z",
                       .url = "https://github.com/you/weather/issues/12"};
const GitHubPullRequest radar{.id = 140,
                              .number = 140,
                              .title = "Add radar",
                              .author = "bob",
                              .createdAt = "2026-02-04T04:05:06Z",
                              .isDraft = true,
                              .url = "https://github.com/you/weather/pull/140"};

IssueAnswer success(GitHubRepositoryData data) {
    return {.path = "/home/you/weather",
            .ownerRepo = "you/weather",
            .result = {GitHubRepoScanResult::Success{data}},
            .fetchedAt = noon,
            .shown = data};
}

IssueAnswer skipped() {
    return {.path = "/home/you/thesis", .result = {GitHubRepoScanResult::Skipped{}}};
}

IssueAnswer failed(std::optional<Date> fetchedAt, GitHubRepositoryData lastKnown) {
    return {.path = "/home/you/weather",
            .ownerRepo = "you/weather",
            .result = {GitHubRepoScanResult::Failed{}},
            .fetchedAt = fetchedAt,
            .shown = std::move(lastKnown)};
}

TEST(IssueReport_List, HasAHeadingAndALineEach) {
    EXPECT_EQ(issueList(success({{rain}, {radar}}), {}),
              "weather  you/weather  1 issue · 1 pull request\n"
              "  ● #12    Rain is wet  [bug, help wanted]  alice  2026-02-03\n"
              "  ⇄ #140   Add radar  [draft]  bob  2026-02-04\n");
}

TEST(IssueReport_List, OfARepositoryWithoutAnySaysSo) {
    EXPECT_EQ(issueList(success({}), {}), "weather  you/weather  no open issues\n");
}

TEST(IssueReport_List, OfARepositoryThatIsNotOnGitHubIsEmpty) {
    EXPECT_EQ(issueList(skipped(), {}), "");
}

TEST(IssueReport_List, AfterAFailureShowsTheLastKnownWithTheirTime) {
    EXPECT_EQ(issueList(failed(noon, {{rain}, {}}), {}),
              "weather  you/weather  1 issue, as of 2026-03-01T12:00:00Z\n"
              "  ● #12    Rain is wet  [bug, help wanted]  alice  2026-02-03\n");
}

TEST(IssueReport_List, AfterAFailureWithNothingKnownSaysThat) {
    EXPECT_EQ(issueList(failed(std::nullopt, {}), {}), "weather  you/weather  not known\n");
}

TEST(IssueReport_List, TitleGivesWayOnANarrowTerminal) {
    GitHubIssue issue = rain;
    issue.title = std::string(200, 'x');
    const std::string text = issueList(success({{issue}, {}}), {.columns = 80});
    EXPECT_THAT(text, ::testing::HasSubstr("xxx…  [bug, help wanted]  alice  2026-02-03\n"));
}

TEST(IssueReport_List, ForeignControlCharactersAreMadeHarmless) {
    GitHubIssue issue = rain;
    issue.title = "a\033[2Jb\nc";
    issue.labels = {"\a"};
    issue.author = "\x9b";
    const std::string text = issueList(success({{issue}, {}}), {});
    EXPECT_THAT(text, ::testing::Not(::testing::HasSubstr("\033")));
    EXPECT_THAT(text, ::testing::Not(::testing::HasSubstr("\a")));
    EXPECT_EQ(std::ranges::count(text, '\n'), 2);
}

TEST(IssueReport_List, IsColouredOnRequest) {
    EXPECT_THAT(issueList(success({{rain}, {}}), {.color = true}),
                ::testing::HasSubstr("\033[32m  ● #12"));
}

TEST(IssueReport_Counts, LeaveOutWhatThereIsNone) {
    EXPECT_EQ(issueCounts(0, 0), "no open issues");
    EXPECT_EQ(issueCounts(1, 0), "1 issue");
    EXPECT_EQ(issueCounts(0, 2), "2 pull requests");
    EXPECT_EQ(issueCounts(3, 1), "3 issues · 1 pull request");
}

TEST(IssueReport_Totals, AddUpAndNameWhatIsMissing) {
    EXPECT_EQ(issueTotals({success({{rain}, {radar}}), skipped(), failed(noon, {{rain}, {}})}),
              "3 repositories · 2 issues · 1 pull request · 1 not on GitHub · "
              "1 could not be asked about");
}

TEST(IssueReport_Totals, SayNothingOfIssuesWhereNobodyWasAsked) {
    EXPECT_EQ(issueTotals({skipped()}), "1 repository · 1 not on GitHub");
}

TEST(IssueReport_Json, HasTheAnswerUnderItsNames) {
    EXPECT_EQ(jsonText(issueJson(success({{}, {radar}}))),
              R"({"path":"/home/you/weather","ownerRepo":"you/weather","result":"success",)"
              R"("fetchedAt":"2026-03-01T12:00:00Z","issues":[],"pullRequests":[{"id":140,)"
              R"("number":140,"title":"Add radar","state":"OPEN","labels":[],"author":"bob",)"
              R"("createdAt":"2026-02-04T04:05:06Z","updatedAt":null,"isDraft":true,)"
              R"("url":"https://github.com/you/weather/pull/140"}]})");
}

TEST(IssueReport_Json, HasNullForWhatIsAbsent) {
    EXPECT_EQ(jsonText(issueJson(skipped())),
              R"({"path":"/home/you/thesis","ownerRepo":null,"result":"skipped",)"
              R"("fetchedAt":null,"issues":[],"pullRequests":[]})");
}

TEST(IssueReport_Json, KeepsTheLastKnownAfterAFailure) {
    const std::string text = jsonText(issueJson(failed(noon, {{rain}, {}})));
    EXPECT_THAT(text, ::testing::HasSubstr(R"("result":"failed")"));
    EXPECT_THAT(text, ::testing::HasSubstr(R"("number":12)"));
}

TEST(GitHubFailureInWords, OfAnExitSaysWhatGhSaid) {
    EXPECT_EQ(gitHubFailureInWords("GITHUB FAIL(4) gh issue list for you/x — please log in\nnow"),
              "please log in (gh issue list, exit status 4)");
}

TEST(GitHubFailureInWords, OfASilentExitNamesTheCommand) {
    EXPECT_EQ(gitHubFailureInWords("GITHUB FAIL(1) gh pr list for you/x — "),
              "gh failed (gh pr list, exit status 1)");
}

TEST(GitHubFailureInWords, OfATimeOutSaysSo) {
    EXPECT_EQ(gitHubFailureInWords("GITHUB TIMEOUT gh pr list for you/x"),
              "gh pr list took too long");
}

TEST(GitHubFailureInWords, OfAMissingGhTellsTheWayOn) {
    EXPECT_EQ(gitHubFailureInWords("GITHUB gh CLI not found in known paths"),
              "gh, the command-line tool of GitHub, is not installed where it is looked for "
              "(`tarnbeck-cli doctor` says more)");
}

TEST(GitHubFailureInWords, OfALaunchThatFailedHasTheSystemsWords) {
    EXPECT_EQ(gitHubFailureInWords("GITHUB gh launch failed for issue you/x: Exec format error"),
              "gh can't be started: Exec format error");
}

}  // namespace
}  // namespace tarnbeck::cli
