// What a scan gives, keeps and says when `gh` does not answer.
#include <sys/stat.h>

#include "GitHubScannerFixture.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

class GitHubScanner_Retry : public testing::GitHubScannerFixture {};
class GitHubScanner_OneListFailed : public testing::GitHubScannerFixture {};
class GitHubScanner_BothFailed : public testing::GitHubScannerFixture {
  protected:
    // Fills the cache, lets everything fail from then on, and lets time pass.
    void failAfterSuccess(std::chrono::nanoseconds later) {
        ghLists(2, 1);
        scan();
        ghFails("issue");
        ghFails("pr");
        advance(later);
    }
};
class GitHubScanner_NoGh : public testing::GitHubScannerFixture {};
class GitHubScanner_NoLaunch : public testing::GitHubScannerFixture {
  protected:
    void makeGhThatCantBeLaunched() {
        const std::string path = log_.folder.write("gh", "#!/nonexistent/interpreter\n");
        ASSERT_EQ(chmod(path.c_str(), 0755), 0);
        options_.ghCandidates = {path};
    }
};
class GitHubScanner_Hanging : public testing::GitHubScannerFixture {};

TEST_F(GitHubScanner_Retry, ListThatFailedIsAskedForOnceMoreAfter300Milliseconds) {
    ghLists(2, 1);
    gh_.playsOnce("issue", 1, "fail 1", "for a moment");
    EXPECT_EQ(inShort(scan()), "2+1");
    EXPECT_EQ(gh_.calls("issue"), 2);
    EXPECT_EQ(gh_.calls("pr"), 1);
    EXPECT_THAT(pauses_, ElementsAre(300ms));
    EXPECT_THAT(lines(), ElementsAre("GITHUB FAIL(1) gh issue list for owner/repo — for a moment"));
}

TEST_F(GitHubScanner_Retry, SecondFailureStands) {
    ghFails("pr");
    EXPECT_EQ(inShort(scan()), "failed");
    EXPECT_EQ(gh_.calls("issue"), 1);
    EXPECT_EQ(gh_.calls("pr"), 2);
    EXPECT_THAT(pauses_, ElementsAre(300ms));
}

TEST_F(GitHubScanner_Retry, EmptyListIsAnAnswerAndNotAskedForAgain) {
    ghLists(0, 0);
    scan();
    EXPECT_EQ(gh_.calls("issue"), 1);
}

TEST_F(GitHubScanner_Retry, BothListsAreAskedForThoughTheFirstFailed) {
    ghFails("issue");
    ghFails("pr");
    scan();
    EXPECT_EQ(gh_.calls("issue"), 2);
    EXPECT_EQ(gh_.calls("pr"), 2);
    EXPECT_THAT(pauses_, ElementsAre(300ms, 300ms));
}

TEST_F(GitHubScanner_OneListFailed, WithoutAYoungAnswerTheScanFailsAndDropsTheOtherList) {
    ghLists(2, 1);
    ghFails("pr");
    EXPECT_EQ(inShort(scan()), "failed");
    EXPECT_EQ(scanner().lastKnownIssues("/repo"), std::nullopt);
}

TEST_F(GitHubScanner_OneListFailed, AnswerThatIsTooOldDoesNotFillTheGap) {
    ghLists(2, 1);
    scan();
    ghLists(5, 5);
    ghFails("pr");
    advance(900s);
    EXPECT_EQ(inShort(scan()), "failed");
    EXPECT_EQ(scanner().lastKnownIssues("/repo")->size(), 2);
}

TEST_F(GitHubScanner_OneListFailed, PullRequestsOfAYoungAnswerStandBesideFreshIssues) {
    ghLists(2, 1);
    scan();
    ghLists(5, 5);
    ghFails("pr");
    advance(899s);
    EXPECT_EQ(inShort(scan(forceRefresh)), "5+1");
}

TEST_F(GitHubScanner_OneListFailed, IssuesOfAYoungAnswerStandBesideFreshPullRequests) {
    ghLists(2, 1);
    scan();
    ghLists(5, 5);
    ghFails("issue");
    EXPECT_EQ(inShort(scan(forceRefresh)), "2+5");
}

TEST_F(GitHubScanner_OneListFailed, MergedListsAreKeptWithTheTimeRenewedForBoth) {
    ghLists(2, 1);
    scan();
    ghLists(5, 5);
    ghFails("pr");
    advance(100s);
    scan(forceRefresh);
    EXPECT_EQ(scanner().lastKnownIssues("/repo")->size(), 5);
    EXPECT_EQ(scanner().lastKnownPullRequests("/repo")->size(), 1);
    EXPECT_EQ(scanner().lastKnownIssueFetchDate("/repo"), now());
}

TEST_F(GitHubScanner_BothFailed, WithoutAnAnswerTheScanFails) {
    ghFails("issue");
    ghFails("pr");
    EXPECT_EQ(inShort(scan()), "failed");
    EXPECT_THAT(lines(), ElementsAre("GITHUB FAIL(1) gh issue list for owner/repo — went wrong",
                                     "GITHUB FAIL(1) gh issue list for owner/repo — went wrong",
                                     "GITHUB FAIL(1) gh pr list for owner/repo — went wrong",
                                     "GITHUB FAIL(1) gh pr list for owner/repo — went wrong"));
}

TEST_F(GitHubScanner_BothFailed, YoungAnswerStandsThoughTheScanWasForced) {
    failAfterSuccess(899s);
    EXPECT_EQ(inShort(scan(forceRefresh)), "2+1");
}

TEST_F(GitHubScanner_BothFailed, AnswerOf900SecondsIsTooOldButStaysKnown) {
    failAfterSuccess(900s);
    EXPECT_EQ(inShort(scan(forceRefresh)), "failed");
    EXPECT_EQ(scanner().lastKnownIssues("/repo")->size(), 2);
}

TEST_F(GitHubScanner_BothFailed, TimeOfTheYoungAnswerStaysAsItWas) {
    failAfterSuccess(100s);
    const auto before = scanner().lastKnownIssueFetchDate("/repo");
    scan(forceRefresh);
    EXPECT_EQ(scanner().lastKnownIssueFetchDate("/repo"), before);
}

TEST_F(GitHubScanner_BothFailed, MissingAuthenticationFailsTheScanWithItsWords) {
    for (const char* resource : {"issue", "pr"}) {
        gh_.plays(resource, "fail 4",
                  "To get started with GitHub CLI, please run:  gh auth login\n");
    }
    EXPECT_EQ(inShort(scan()), "failed");
    EXPECT_THAT(lines(), SizeIs(4));
    EXPECT_THAT(lines(), Each(StartsWith("GITHUB FAIL(4) gh ")));
}

TEST_F(GitHubScanner_NoGh, ScanFailsAndTheLogSaysSoOnceForTheWholeRun) {
    options_.ghCandidates = {"/nonexistent/gh"};
    EXPECT_EQ(inShort(scan()), "failed");
    EXPECT_EQ(inShort(scan()), "failed");
    EXPECT_THAT(lines(), ElementsAre("GITHUB gh CLI not found in known paths"));
}

TEST_F(GitHubScanner_NoGh, YoungAnswerOfTheRunBeforeServes) {
    ghLists(2, 1);
    scan();
    restart();
    options_.ghCandidates = {"/nonexistent/gh"};
    EXPECT_EQ(inShort(scan(forceRefresh)), "2+1");
}

TEST_F(GitHubScanner_NoGh, IsLookedForInThesePlacesInThisOrder) {
    EXPECT_THAT(GitHubScanner::Options{}.ghCandidates,
                ElementsAre("/opt/homebrew/bin/gh", "/usr/local/bin/gh", "/usr/bin/gh"));
}

TEST_F(GitHubScanner_NoLaunch, YoungAnswerStands) {
    ghLists(2, 1);
    scan();
    restart();
    makeGhThatCantBeLaunched();
    EXPECT_EQ(inShort(scan(forceRefresh)), "2+1");
}

TEST_F(GitHubScanner_NoLaunch, IsTriedOnceMoreForEachListAndFailsTheScan) {
    makeGhThatCantBeLaunched();
    EXPECT_EQ(inShort(scan()), "failed");
    const std::string words = " owner/repo: No such file or directory";
    EXPECT_THAT(lines(), ElementsAre("GITHUB gh launch failed for issue" + words,
                                     "GITHUB gh launch failed for issue" + words,
                                     "GITHUB gh launch failed for pr" + words,
                                     "GITHUB gh launch failed for pr" + words));
}

TEST_F(GitHubScanner_Hanging, IsTriedOnceMoreForEachListAndFailsTheScan) {
    gh_.plays("issue", "hang");
    gh_.plays("pr", "hang");
    options_.timeouts.run = 100ms;
    EXPECT_EQ(inShort(scan()), "failed");
    EXPECT_THAT(lines(), ElementsAre("GITHUB TIMEOUT gh issue list for owner/repo",
                                     "GITHUB TIMEOUT gh issue list for owner/repo",
                                     "GITHUB TIMEOUT gh pr list for owner/repo",
                                     "GITHUB TIMEOUT gh pr list for owner/repo"));
}

TEST_F(GitHubScanner_Hanging, YoungAnswerStands) {
    ghLists(2, 1);
    scan();
    restart();
    gh_.plays("issue", "hang");
    gh_.plays("pr", "hang");
    options_.timeouts.run = 100ms;
    EXPECT_EQ(inShort(scan(forceRefresh)), "2+1");
}

}  // namespace
}  // namespace tarnbeck
