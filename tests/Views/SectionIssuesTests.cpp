#include "SectionFixture.h"
#include "SectionOutline.h"

namespace tarnbeck::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const SectionFlags issuesDomain = flagsOf(DomainMode::issues);

GitRepository withIssues(const ImmutableList<GitHubIssue>& issues) {
    GitRepository repository = calmRepository();
    repository.issues = issues;
    return repository;
}

GitRepository withPullRequests(const ImmutableList<GitHubPullRequest>& pullRequests) {
    GitRepository repository = calmRepository();
    repository.pullRequests = pullRequests;
    return repository;
}

Row issueRowOf(const GitHubIssue& issue) {
    return rowsOfKind(rowsOf(withIssues({issue}), issuesDomain), Row::Kind::issue).at(0);
}

Row pullRequestRowOf(const GitHubPullRequest& pullRequest) {
    return rowsOfKind(rowsOf(withPullRequests({pullRequest}), issuesDomain), Row::Kind::pullRequest)
        .at(0);
}

// --- The subsections ---

TEST(IssuesSection, HasItsIconCountAndReload) {
    EXPECT_EQ(outline(rowTitled(rowsOf(withIssues(numbered(3, numberedIssue)), issuesDomain, {}),
                                "Issues")),
              R"(subsection [>] (exclamationmark.bubble) "Issues" 3
    says "Issues, 3, collapsed"
    click toggle "Show Issues"
    refreshIssues (arrow.clockwise) "Reload issues and pull requests"
)");
}

TEST(PullRequestsSection, HasItsIconCountAndReload) {
    EXPECT_EQ(outline(rowTitled(
                  rowsOf(withPullRequests(numbered(2, numberedPullRequest)), issuesDomain, {}),
                  "Pull Requests")),
              R"(subsection [>] (arrow.triangle.merge) "Pull Requests" 2
    says "Pull Requests, 2, collapsed"
    click toggle "Show Pull Requests"
    refreshIssues (arrow.clockwise) "Reload issues and pull requests"
)");
}

TEST(IssuesSection, BothAreClosedAtFirst) {
    GitRepository repository = withIssues(numbered(1, numberedIssue));
    repository.pullRequests = numbered(1, numberedPullRequest);
    EXPECT_THAT(titlesOf(rowsOf(repository, issuesDomain, {})),
                ElementsAre("Issues", "Pull Requests"));
}

TEST(IssuesSection, ProgressStandsInThePlaceOfTheReload) {
    SectionFlags flags = issuesDomain;
    flags.issueReloadInProgress = true;
    for (const Row& row : rowsOf(calmRepository(), flags, {})) {
        EXPECT_TRUE(row.actions.at(0).isInProgress) << row.title;
    }
}

TEST(IssuesSection, ReloadIsNotOfferedWhereNothingWouldDoIt) {
    SectionFlags flags = issuesDomain;
    flags.canRefreshIssues = false;
    for (const Row& row : rowsOf(calmRepository(), flags, {})) {
        EXPECT_THAT(row.actions, IsEmpty());
    }
}

TEST(IssuesSection, InTheDomainOfGitIsNotShownWhereIssuesAreOff) {
    SectionFlags flags = flagsOf(DomainMode::git);
    flags.showIssues = false;
    const auto rows = rowsOf(withIssues(numbered(1, numberedIssue)), flags);
    EXPECT_THAT(titlesOf(rowsOfKind(rows, Row::Kind::subsection)), ElementsAre("Branches"));
}

TEST(IssuesSection, InItsOwnDomainIsShownAlsoWhereIssuesAreOff) {
    SectionFlags flags = issuesDomain;
    flags.showIssues = false;
    EXPECT_THAT(titlesOf(rowsOf(calmRepository(), flags, {})),
                ElementsAre("Issues", "Pull Requests"));
}

TEST(IssuesSection, CombinedShowsThemBelowWhatGitKnows) {
    EXPECT_THAT(titlesOf(rowsOf(calmRepository(), flagsOf(DomainMode::combined), {})),
                ElementsAre("Branches", "main", "Issues", "Pull Requests"));
}

// --- Nothing to show ---

TEST(IssuesSection, WithoutAnySaysSo) {
    const auto states = rowsOfKind(rowsOf(calmRepository(), issuesDomain), Row::Kind::state);
    ASSERT_EQ(states.size(), 2U);
    EXPECT_EQ(outline(states[0]), R"(  state (checkmark.circle) "No open issues" secondary
      says "No open issues"
)");
    EXPECT_EQ(outline(states[1]), R"(  state (checkmark.circle) "No open pull requests" secondary
      says "No open pull requests"
)");
}

TEST(IssuesSection, WithoutAnyYetSaysThatTheyAreBeingLoaded) {
    SectionFlags flags = issuesDomain;
    flags.issueScanInProgress = true;
    const auto states = rowsOfKind(rowsOf(calmRepository(), flags), Row::Kind::state);
    ASSERT_EQ(states.size(), 2U);
    EXPECT_EQ(outline(states[0]), R"(  state (loading) "Loading issues..." secondary
      says "Loading issues..."
)");
    EXPECT_EQ(outline(states[1]), R"(  state (loading) "Loading pull requests..." secondary
      says "Loading pull requests..."
)");
}

TEST(IssuesSection, ThoseThatAreThereStayWhileTheyAreBeingLoadedAnew) {
    SectionFlags flags = issuesDomain;
    flags.issueScanInProgress = true;
    const auto rows = rowsOf(withIssues(numbered(1, numberedIssue)), flags);
    EXPECT_EQ(rowsOfKind(rows, Row::Kind::issue).size(), 1U);
}

// --- How many are shown ---

TEST(IssuesSection, TwentyFiveIssuesAreTwentyFiveRowsAndNoMore) {
    const auto rows = rowsOf(withIssues(numbered(25, numberedIssue)), issuesDomain);
    EXPECT_EQ(rowsOfKind(rows, Row::Kind::issue).size(), 25U);
    EXPECT_THAT(rowsOfKind(rows, Row::Kind::more), IsEmpty());
}

TEST(IssuesSection, TwentySixIssuesAreTwentyFiveRowsAndOneThatSaysOneMoreOnGitHub) {
    const auto rows = rowsOf(withIssues(numbered(26, numberedIssue)), issuesDomain);
    EXPECT_EQ(rowsOfKind(rows, Row::Kind::issue).size(), 25U);
    const auto more = rowsOfKind(rows, Row::Kind::more);
    ASSERT_EQ(more.size(), 1U);
    EXPECT_EQ(outline(more[0]), R"(  more "... and 1 more on GitHub" secondary
      says "And 1 more issue on GitHub"
)");
}

TEST(PullRequestsSection, TwentySevenAreTwentyFiveRowsAndOneThatSaysTwoMoreOnGitHub) {
    const auto rows = rowsOf(withPullRequests(numbered(27, numberedPullRequest)), issuesDomain);
    EXPECT_EQ(rowsOfKind(rows, Row::Kind::pullRequest).size(), 25U);
    EXPECT_EQ(outline(rows.back()), R"(  more "... and 2 more on GitHub" secondary
      says "And 2 more pull requests on GitHub"
)");
}

// --- One issue ---

TEST(IssueRow, ShowsItsStateNumberTitleAndLabels) {
    GitHubIssue issue = numberedIssue(12);
    issue.title = "It leaks";
    issue.labels = {"bug", "ui"};
    issue.author = "otter";
    EXPECT_EQ(outline(issueRowOf(issue)), R"(  issue (circle green) #12 "It leaks" {bug, ui}
      says "Issue 12, It leaks, open, labels bug, ui, by otter"
      click openUrl "Open issue #12" -> "https://example.org/issues/12"
      copy (doc.on.doc) "Copy issue title" -> "It leaks", then "Issue title copied"
)");
}

TEST(IssueRow, OfAClosedIssueHasAFilledDot) {
    GitHubIssue issue = numberedIssue(12);
    issue.state = "CLOSED";
    const Row row = issueRowOf(issue);
    EXPECT_EQ(row.symbol, "circle.fill");
    EXPECT_EQ(row.symbolColor, StatusColor::secondary);
    EXPECT_EQ(row.accessibleName, "Issue 12, Issue 12, closed");
}

TEST(IssueRow, CountTakesThePlaceOfMoreThanTwoLabels) {
    GitHubIssue issue = numberedIssue(12);
    EXPECT_THAT(issueRowOf(issue).metadata.labels, IsEmpty());
    issue.labels = {"a"};
    EXPECT_THAT(issueRowOf(issue).metadata.labels, ElementsAre("a"));
    issue.labels = {"a", "b", "c"};
    EXPECT_THAT(issueRowOf(issue).metadata.labels, ElementsAre("3 labels"));
    EXPECT_EQ(issueRowOf(issue).accessibleName, "Issue 12, Issue 12, open, labels a, b, c");
}

TEST(IssueRow, WithoutAnAddressOpensNothing) {
    GitHubIssue issue = numberedIssue(12);
    issue.url = "";
    EXPECT_EQ(issueRowOf(issue).click, std::nullopt);
}

TEST(IssueRow, ControlCharactersAreReplacedForTheEyeAndCopiedAsTheyAre) {
    GitHubIssue issue = numberedIssue(12);
    issue.title = "a\x1b[31m\n<b>b</b>\u202E";
    const Row row = issueRowOf(issue);
    EXPECT_EQ(row.title, "a\uFFFD[31m\uFFFD<b>b</b>\uFFFD");
    EXPECT_EQ(row.actions.at(0).reference, issue.title);
}

TEST(IssueRow, IsHighlightedWhereItsTitleContainsWhatIsSearchedFor) {
    SectionFlags flags = issuesDomain;
    flags.searchHighlight = "ISSUE 2";
    const auto rows =
        rowsOfKind(rowsOf(withIssues(numbered(2, numberedIssue)), flags), Row::Kind::issue);
    EXPECT_FALSE(rows[0].isTitleHighlighted);
    EXPECT_TRUE(rows[1].isTitleHighlighted);
}

TEST(IssueRow, TwoOfOneNumberStillHaveIdsOfTheirOwn) {
    const auto rows = rowsOfKind(
        rowsOf(withIssues({numberedIssue(1), numberedIssue(2), numberedIssue(1)}), issuesDomain),
        Row::Kind::issue);
    EXPECT_THAT(idsOf(rows), ElementsAre("/work/lake\nissues\n1", "/work/lake\nissues\n2",
                                         "/work/lake\nissues\n1\n2"));
}

// --- One pull request ---

TEST(PullRequestRow, ShowsItsNumberTitleAndLabels) {
    GitHubPullRequest pullRequest = numberedPullRequest(8);
    pullRequest.title = "Mend the leak";
    pullRequest.labels = {"bug"};
    pullRequest.author = "otter";
    EXPECT_EQ(outline(pullRequestRowOf(pullRequest)),
              R"(  pullRequest (arrow.triangle.merge) #8 "Mend the leak" {bug}
      says "Pull request 8, Mend the leak, open, label bug, by otter"
      help "Mend the leak\nStatus: OPEN\nLabels: bug\nAuthor: otter"
      click openUrl "Open pull request #8" -> "https://example.org/pull/8"
      copy (doc.on.doc) "Copy pull request title" -> "Mend the leak", then "Pull request title copied"
)");
}

TEST(PullRequestRow, OfADraftSaysSo) {
    GitHubPullRequest pullRequest = numberedPullRequest(8);
    pullRequest.isDraft = true;
    const Row row = pullRequestRowOf(pullRequest);
    EXPECT_EQ(row.metadata.status, "Draft");
    EXPECT_EQ(row.help, "Pull request 8\nStatus: Draft");
    EXPECT_EQ(row.accessibleName, "Pull request 8, Pull request 8, draft");
}

TEST(PullRequestRow, TooltipLeavesOutWhatIsEmpty) {
    GitHubPullRequest pullRequest = numberedPullRequest(8);
    EXPECT_EQ(pullRequestRowOf(pullRequest).help, "Pull request 8\nStatus: OPEN");
    pullRequest.author = "otter";
    EXPECT_EQ(pullRequestRowOf(pullRequest).help, "Pull request 8\nStatus: OPEN\nAuthor: otter");
    pullRequest.labels = {"a", "b", "c"};
    EXPECT_EQ(pullRequestRowOf(pullRequest).help,
              "Pull request 8\nStatus: OPEN\nLabels: a, b, c\nAuthor: otter");
}

TEST(PullRequestRow, WithoutAnAddressOpensNothing) {
    GitHubPullRequest pullRequest = numberedPullRequest(8);
    pullRequest.url = "";
    EXPECT_EQ(pullRequestRowOf(pullRequest).click, std::nullopt);
}

}  // namespace
}  // namespace tarnbeck::testing
