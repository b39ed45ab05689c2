// What becomes of the scan of one repository when git fails: what is logged, tried again, left out.
#include <algorithm>
#include <utility>

#include "RecordedScan.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::optional<std::string> failed = std::nullopt;

struct RequiredCommand {
    std::string name;
    std::string question;
    std::string reason;
    Answers answers;  // that lead to the command and let it fail once
};

class StaticScan_RequiredCommand : public ::testing::TestWithParam<RequiredCommand> {
  protected:
    StaticScan_RequiredCommand() {
        for (const auto& [question, answers] : GetParam().answers)
            scan_.answers[question] = answers;
    }
    std::string retryLine() const {
        return "RETRY project: " + GetParam().reason + " — retrying in 250ms (attempt 1)";
    }
    // The answers of git from now on all fail where the first one did.
    void failAlways() {
        auto& answers = scan_.answers[GetParam().question];
        const auto first = std::ranges::find(answers, failed);
        answers.resize(static_cast<std::size_t>(first - answers.begin()) + 1);
    }

    RecordedScan scan_;
};

TEST_P(StaticScan_RequiredCommand, FailureIsLoggedWithItsReasonAndTriedAgainAfter250Milliseconds) {
    scan_.begin(scan_.path);
    EXPECT_THAT(scan_.observed.lines, ElementsAre(retryLine()));
    const auto commandsOfTheFirst = scan_.invocations.size();
    EXPECT_EQ(scan_.commands().back(), GetParam().question);
    scan_.simulation.advance(249ms);
    EXPECT_EQ(scan_.invocations.size(), commandsOfTheFirst);
    EXPECT_EQ(scan_.completions, 0);
    scan_.simulation.advance(1ms);
    EXPECT_GT(scan_.invocations.size(), commandsOfTheFirst);
    EXPECT_EQ(scan_.completions, 1);
}

TEST_P(StaticScan_RequiredCommand, SecondAttemptBeginsAnewAndItsSuccessCounts) {
    scan_.begin(scan_.path);
    const auto commandsOfTheFirst = scan_.invocations.size();
    scan_.simulation.advance(10s);
    EXPECT_EQ(scan_.commands().at(commandsOfTheFirst), isBareQuestion);
    ASSERT_TRUE(scan_.repository);
    EXPECT_EQ(scan_.repository->branches.size(), 1U);
    EXPECT_THAT(scan_.observed.lines, ElementsAre(retryLine()));
}

TEST_P(StaticScan_RequiredCommand, SecondFailureGivesNothingAndNoFurtherLine) {
    failAlways();
    scan_.begin(scan_.path);
    scan_.simulation.advance(10s);
    EXPECT_EQ(scan_.completions, 1);
    EXPECT_EQ(scan_.repository, std::nullopt);
    EXPECT_THAT(scan_.observed.lines, ElementsAre(retryLine()));
}

TEST_P(StaticScan_RequiredCommand, IsTriedAgainExactlyOnce) {
    failAlways();
    scan_.scan();
    EXPECT_EQ(scan_.timesAsked(headQuestion), 2);
    EXPECT_EQ(scan_.simulation.loop.pendingTimers(), 0U);
}

const std::vector<RequiredCommand> requiredCommands = {
    {"HeadName", headQuestion, "HEAD resolution failed", {{headQuestion, {failed, "main"}}}},
    {"ShortHash",
     shortHashQuestion,
     "detached HEAD short hash resolution failed",
     {{headQuestion, {"HEAD"}}, {shortHashQuestion, {failed, "abc1234"}}}},
    {"Branches",
     branchesQuestion,
     "branch enumeration failed",
     {{branchesQuestion, {failed, "main\t*"}}}},
    {"Bareness",
     isBareQuestion,
     "bare repository detection failed",
     {{isBareQuestion, {"false", "false", failed, "false", "false", "false"}}}},
    {"Status", changesQuestion, "working tree status failed", {{changesQuestion, {failed, ""}}}},
};

INSTANTIATE_TEST_SUITE_P(Each, StaticScan_RequiredCommand, ::testing::ValuesIn(requiredCommands),
                         [](const auto& instance) { return instance.param.name; });

TEST(StaticScan_Retry, OfARequestThatIsARetryAlreadyIsNotMade) {
    RecordedScan scan;
    int completions = 0;
    RepositoryScanner::scanRepositoryImpl(
        {.loop = scan.simulation.loop,
         .queues = scan.simulation.queues,
         .log = scan.observed.log,
         .git = [](const GitInvocation&) { return std::optional<std::string>(); },
         .home = "/"},
        {.at = scan.path, .retryCount = 1}, [&](const std::optional<GitRepository>& result) {
            EXPECT_EQ(result, std::nullopt);
            ++completions;
        });
    scan.simulation.runUntilIdle();
    EXPECT_EQ(completions, 1);
    EXPECT_THAT(scan.observed.lines, IsEmpty());
}

TEST(StaticScan_Retry, FindsARepositoryThatHasGoneMeanwhileAbsentWithoutALine) {
    RecordedScan scan;
    scan.answers[headQuestion] = {failed};
    scan.begin(scan.path);
    std::filesystem::remove_all(scan.path);
    scan.simulation.advance(10s);
    EXPECT_EQ(scan.repository, std::nullopt);
    EXPECT_EQ(scan.timesAsked(headQuestion), 1);
    EXPECT_THAT(scan.observed.lines,
                ElementsAre("RETRY project: HEAD resolution failed — retrying in 250ms "
                            "(attempt 1)"));
}

TEST(StaticScan_Retry, ChoosesTheSelectionAnew) {
    RecordedScan scan;
    scan.answers[isBareQuestion] = {"true", "false", failed, "false"};
    const auto repository = scan.scan();
    ASSERT_TRUE(repository);
    EXPECT_EQ(repository->gitConfigurationIssue, std::nullopt);
}

TEST(StaticScan_Retry, FirstQuestionsForBarenessMayFailWithoutOne) {
    RecordedScan scan;
    scan.answers[isBareQuestion] = {failed, failed, "false"};
    EXPECT_TRUE(scan.scan());
    EXPECT_THAT(scan.observed.lines, IsEmpty());
}

TEST(StaticScan_NoBranches, DetachedIsLoggedAndLookedAtAgainAfter500Milliseconds) {
    RecordedScan scan;
    scan.answers[headQuestion] = {"HEAD"};
    scan.answers[branchesQuestion] = {"", "main\t "};
    scan.begin(scan.path);
    EXPECT_THAT(
        scan.observed.lines,
        ElementsAre("INCONSISTENT project: detached HEAD but 0 branches — retrying in 500ms "
                    "(attempt 1)"));
    scan.simulation.advance(499ms);
    EXPECT_EQ(scan.timesAsked(headQuestion), 1);
    EXPECT_EQ(scan.completions, 0);
    scan.simulation.advance(1ms);
    EXPECT_EQ(scan.timesAsked(headQuestion), 2);
    ASSERT_TRUE(scan.repository);
    EXPECT_EQ(scan.repository->branches.size(), 1U);
}

TEST(StaticScan_NoBranches, IsSeenOnlyAfterAllCommandsHaveRun) {
    RecordedScan scan;
    scan.answers[headQuestion] = {"HEAD"};
    scan.answers[branchesQuestion] = {""};
    scan.begin(scan.path);
    EXPECT_EQ(scan.commands().back(), stashesQuestion);
}

TEST(StaticScan_NoBranches, DetachedTwiceIsAWarningAndTheRepositoryIsShown) {
    RecordedScan scan;
    scan.answers[headQuestion] = {"HEAD"};
    scan.answers[branchesQuestion] = {""};
    const auto repository = scan.scan();
    ASSERT_TRUE(repository);
    EXPECT_THAT(repository->branches, IsEmpty());
    EXPECT_THAT(
        scan.observed.lines,
        ElementsAre("INCONSISTENT project: detached HEAD but 0 branches — retrying in 500ms "
                    "(attempt 1)",
                    "WARNING project: 0 branches, isDetached=true, currentBranch=abc1234"));
    EXPECT_EQ(scan.timesAsked(headQuestion), 2);
}

TEST(StaticScan_NoBranches, OnABranchIsAWarningAtOnce) {
    RecordedScan scan;
    scan.answers[branchesQuestion] = {""};
    const auto repository = scan.scan();
    ASSERT_TRUE(repository);
    EXPECT_THAT(scan.observed.lines,
                ElementsAre("WARNING project: 0 branches, isDetached=false, currentBranch=main"));
    EXPECT_EQ(scan.timesAsked(headQuestion), 1);
}

TEST(StaticScan_NoBranches, AfterARetryIsAWarningWithoutAnother) {
    RecordedScan scan;
    scan.answers[headQuestion] = {failed, "HEAD"};
    scan.answers[branchesQuestion] = {""};
    ASSERT_TRUE(scan.scan());
    EXPECT_THAT(scan.observed.lines,
                ElementsAre("RETRY project: HEAD resolution failed — retrying in 250ms (attempt 1)",
                            "WARNING project: 0 branches, isDetached=true, currentBranch=abc1234"));
}

// A repository with something in every field that an optional command fills.
RecordedScan& filled(RecordedScan& scan) {
    scan.answers[remotesQuestion] = {"origin\thttps://github.com/o/r (fetch)"};
    scan.answers[remoteBranchesQuestion] = {"origin/main"};
    scan.answers[syncStatusQuestion] = {"# branch.upstream origin/main\n# branch.ab +0 -0"};
    scan.answers[tagsQuestion] = {"v1"};
    scan.answers[stashesQuestion] = {"stash@{0}\x1FWIP"};
    return scan;
}

// What is left when `question` fails; expects one attempt without a line.
GitRepository withFailed(const char* question) {
    RecordedScan scan;
    filled(scan).answers[question] = {failed};
    const auto repository = scan.scan();
    EXPECT_TRUE(repository) << question;
    EXPECT_THAT(scan.observed.lines, IsEmpty()) << question;
    EXPECT_EQ(scan.timesAsked(headQuestion), 1) << question;
    GitRepository result = repository.value_or(GitRepository{});
    result.path = "";
    result.worktrees = result.worktrees.empty() ? ImmutableList<GitWorktree>{}
                                                : ImmutableList<GitWorktree>{{.path = "main"}};
    return result;
}

GitRepository withNothingFailed() {
    return withFailed(shortHashQuestion);
}

TEST(StaticScan_OptionalCommand, RemotesThatFailLeaveTheirFieldEmptyAndNothingElse) {
    GitRepository expected = withNothingFailed();
    ASSERT_THAT(std::exchange(expected.gitHubOwnerRepos, {}), ElementsAre("o/r"));
    EXPECT_EQ(withFailed(remotesQuestion), expected);
}

TEST(StaticScan_OptionalCommand, RemoteBranchesThatFailLeaveTheirFieldEmptyAndNothingElse) {
    GitRepository expected = withNothingFailed();
    ASSERT_THAT(std::exchange(expected.remoteBranches, {}), ElementsAre("origin/main"));
    EXPECT_EQ(withFailed(remoteBranchesQuestion), expected);
}

TEST(StaticScan_OptionalCommand, SyncStatusThatFailsIsUnknownAndNothingElseChanges) {
    GitRepository expected = withNothingFailed();
    ASSERT_EQ(std::exchange(expected.syncStatus, GitSyncStatus::Unknown{}),
              GitSyncStatus(GitSyncStatus::UpToDate{"origin/main"}));
    EXPECT_EQ(withFailed(syncStatusQuestion), expected);
}

TEST(StaticScan_OptionalCommand, WorktreesThatFailLeaveTheirFieldEmptyAndNothingElse) {
    GitRepository expected = withNothingFailed();
    ASSERT_EQ(std::exchange(expected.worktrees, {}).size(), 1U);
    EXPECT_EQ(withFailed(worktreesQuestion), expected);
}

TEST(StaticScan_OptionalCommand, TagsThatFailLeaveTheirFieldEmptyAndNothingElse) {
    GitRepository expected = withNothingFailed();
    ASSERT_THAT(std::exchange(expected.tags, {}), ElementsAre("v1"));
    EXPECT_EQ(withFailed(tagsQuestion), expected);
}

TEST(StaticScan_OptionalCommand, StashesThatFailLeaveTheirFieldsEmptyAndNothingElse) {
    GitRepository expected = withNothingFailed();
    ASSERT_EQ(std::exchange(expected.stashes, {}).size(), 1U);
    ASSERT_EQ(std::exchange(expected.stashCount, 0), 1);
    EXPECT_EQ(withFailed(stashesQuestion), expected);
}

TEST(StaticScan_OptionalCommand, StatusOfALinkedWorktreeThatFailsLeavesItsChangesEmpty) {
    RecordedScan scan;
    scan.answers[worktreesQuestion] = {"worktree " + scan.path + "\n\nworktree /linked\n"};
    scan.answers[changesQuestion] = {failed, " M in main"};
    const auto repository = scan.scan();
    ASSERT_TRUE(repository);
    EXPECT_THAT(repository->worktrees[1].changes, IsEmpty());
    EXPECT_EQ(repository->uncommittedChanges.size(), 1U);
    EXPECT_THAT(scan.observed.lines, IsEmpty());
}

}  // namespace
}  // namespace tarnbeck
