// Which commands the scan of one repository runs, how it addresses the repository, and what it
// makes of the answers.
#include "RecordedScan.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using namespace testing;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

std::vector<std::string> selectionOf(const GitInvocation& invocation) {
    const auto& all = invocation.executableArgs;
    return {all.begin(), all.end() - std::ssize(invocation.logicalArgs)};
}

TEST(StaticScan_Commands, RunInOneFixedOrder) {
    RecordedScan scan;
    scan.scan();
    EXPECT_THAT(
        scan.commands(),
        ElementsAre(isBareQuestion, isBareQuestion, headQuestion, branchesQuestion, isBareQuestion,
                    remotesQuestion, remoteBranchesQuestion, syncStatusQuestion, worktreesQuestion,
                    tagsQuestion, changesQuestion, stashesQuestion));
}

TEST(StaticScan_Commands, DetachedHeadIsAskedForItsShortHashRightAfterItsName) {
    RecordedScan scan;
    scan.answers[headQuestion] = {"HEAD"};
    scan.scan();
    const auto commands = scan.commands();
    EXPECT_EQ(commands.at(2), headQuestion);
    EXPECT_EQ(commands.at(3), shortHashQuestion);
    EXPECT_EQ(commands.at(4), branchesQuestion);
}

TEST(StaticScan_Commands, EachHasAnArgumentOfItsOwnForEachWord) {
    RecordedScan scan;
    scan.scan();
    EXPECT_THAT(scan.invocations.at(3).logicalArgs,
                ElementsAre("branch", "--format=%(refname:short)\t%(HEAD)"));
    EXPECT_THAT(scan.invocations.at(7).logicalArgs,
                ElementsAre("status", "--porcelain=v2", "--branch", "-u"));
    EXPECT_THAT(scan.invocations.at(11).logicalArgs,
                ElementsAre("stash", "list", "--format=%gd%x1f%gs"));
}

TEST(StaticScan_Commands, HaveFifteenSecondsEach) {
    RecordedScan scan;
    scan.answers[headQuestion] = {"HEAD"};
    scan.scan();
    EXPECT_THAT(scan.invocations, Each(Field(&GitInvocation::timeout, 15s)));
}

TEST(StaticScan_Commands, BearThePathInLogLines) {
    RecordedScan scan;
    scan.scan();
    EXPECT_THAT(scan.invocations, Each(Field(&GitInvocation::logRepoPath, scan.path)));
}

TEST(StaticScan_Commands, OnlyThoseThatAlwaysHaveAnAnswerMayNotBeEmpty) {
    RecordedScan scan;
    scan.answers[headQuestion] = {"HEAD"};
    scan.scan();
    std::vector<std::string> withAnAnswer;
    for (const auto& invocation : scan.invocations) {
        if (!invocation.allowEmpty) withAnAnswer.push_back(joined(invocation.logicalArgs, " "));
    }
    EXPECT_THAT(withAnAnswer, ElementsAre(isBareQuestion, isBareQuestion, headQuestion,
                                          shortHashQuestion, branchesQuestion, isBareQuestion));
}

TEST(StaticScan_Commands, RunWithinTheCallOnTheCallersThread) {
    RecordedScan scan;
    Simulation untouched;
    bool completed = false;
    RepositoryScanner::scanRepositoryImpl(
        {.loop = untouched.loop,
         .queues = untouched.queues,
         .log = scan.observed.log,
         .git = [](const GitInvocation&) { return std::optional<std::string>("main"); },
         .home = "/"},
        {.at = scan.path}, [&](const std::optional<GitRepository>& repository) {
            completed = repository.has_value();
        });
    EXPECT_TRUE(completed);
}

TEST(StaticScan_Commands, OfARetryRunOnABackgroundQueue) {
    RecordedScan scan;
    Simulation simulation;
    int commands = 0;
    RepositoryScanner::scanRepositoryImpl({.loop = simulation.loop,
                                           .queues = simulation.queues,
                                           .log = scan.observed.log,
                                           .git =
                                               [&](const GitInvocation&) {
                                                   ++commands;
                                                   return std::optional<std::string>();
                                               },
                                           .home = "/"},
                                          {.at = scan.path},
                                          [](const std::optional<GitRepository>&) {});
    const int ofTheFirstAttempt = commands;
    simulation.loop.advance(std::chrono::milliseconds(250), [&] {
        while (simulation.loop.runOne()) {
        }
    });
    EXPECT_EQ(commands, ofTheFirstAttempt);
    EXPECT_TRUE(simulation.queues.runOne());
    EXPECT_GT(commands, ofTheFirstAttempt);
}

TEST(StaticScan_Selection, NormalFormNamesThePath) {
    RecordedScan scan;
    scan.scan();
    for (std::size_t index = 0; index < scan.invocations.size(); ++index) {
        if (index == 1) continue;
        EXPECT_THAT(selectionOf(scan.invocations[index]), ElementsAre("-C", scan.path));
    }
}

TEST(StaticScan_Selection, SecondQuestionForBarenessNamesFolderAndWorkTree) {
    RecordedScan scan;
    scan.scan();
    EXPECT_THAT(selectionOf(scan.invocations.at(1)),
                ElementsAre("--git-dir", scan.path + "/.git", "--work-tree", scan.path));
}

TEST(StaticScan_Selection, BareOnlyInTheNormalFormUsesTheExplicitFormFromThenOn) {
    RecordedScan scan;
    scan.answers[isBareQuestion] = {"true", "false", "false"};
    scan.scan();
    EXPECT_THAT(selectionOf(scan.invocations.at(0)), ElementsAre("-C", scan.path));
    for (std::size_t index = 1; index < scan.invocations.size(); ++index) {
        EXPECT_THAT(selectionOf(scan.invocations[index]),
                    ElementsAre("--git-dir", scan.path + "/.git", "--work-tree", scan.path));
    }
}

TEST(StaticScan_Selection, BareOnlyInTheNormalFormIsAConfigurationIssueWithAllThatAWorkTreeHas) {
    RecordedScan scan;
    scan.answers[isBareQuestion] = {"true", "false", "false"};
    scan.answers[changesQuestion] = {" M file.txt"};
    scan.answers[stashesQuestion] = {"stash@{0}\x1FWIP"};
    const auto repository = scan.scan();
    ASSERT_TRUE(repository);
    EXPECT_EQ(repository->gitConfigurationIssue, GitConfigurationIssue::coreBareWorktreeMismatch);
    EXPECT_EQ(repository->branches.size(), 1U);
    EXPECT_EQ(repository->uncommittedChanges.size(), 1U);
    EXPECT_EQ(repository->stashCount, 1);
}

TEST(StaticScan_Selection, BareOnlyInTheNormalFormIsNeverClean) {
    RecordedScan scan;
    EXPECT_TRUE(scan.scan()->isClean());
    RecordedScan mismatched;
    mismatched.answers[isBareQuestion] = {"true", "false", "false"};
    EXPECT_FALSE(mismatched.scan()->isClean());
}

using BareAnswers = std::vector<std::optional<std::string>>;

TEST(StaticScan_Selection, EveryOtherPairOfAnswersUsesTheNormalFormWithoutAnIssue) {
    const std::vector<BareAnswers> others = {
        {"false", "false", "false"}, {"false", "true", "false"},
        {"true", "true", "true"},    {"true", std::nullopt, "false"},
        {std::nullopt, "false"},     {"true ", "false", "false"},
        {"true", "False", "false"},  {std::nullopt, std::nullopt, "false"},
    };
    for (const BareAnswers& answers : others) {
        RecordedScan scan;
        scan.answers[isBareQuestion] = answers;
        const auto repository = scan.scan();
        ASSERT_TRUE(repository);
        EXPECT_EQ(repository->gitConfigurationIssue, std::nullopt);
        EXPECT_THAT(selectionOf(scan.invocations.at(2)), ElementsAre("-C", scan.path));
    }
}

TEST(StaticScan_Selection, GitFileIsAskedForBarenessInTheNormalFormAlone) {
    RecordedScan scan;
    scan.folder.write("linked/.git", "gitdir: " + scan.path + "/.git/worktrees/linked\n");
    scan.answers[isBareQuestion] = {"true", "false"};
    scan.begin(scan.folder / "linked");
    const auto commands = scan.commands();
    EXPECT_EQ(commands.at(0), isBareQuestion);
    EXPECT_EQ(commands.at(1), headQuestion);
    for (const auto& invocation : scan.invocations) {
        EXPECT_THAT(selectionOf(invocation), ElementsAre("-C", scan.folder / "linked"));
    }
    EXPECT_EQ(scan.repository->gitConfigurationIssue, std::nullopt);
}

TEST(StaticScan_Bare, TrueBothTimesRunsNoCommandThatNeedsAWorkTree) {
    RecordedScan scan;
    scan.answers[isBareQuestion] = {"true", "true", "true"};
    scan.scan();
    EXPECT_THAT(
        scan.commands(),
        ElementsAre(isBareQuestion, isBareQuestion, headQuestion, branchesQuestion, isBareQuestion,
                    remotesQuestion, remoteBranchesQuestion, worktreesQuestion, tagsQuestion));
}

TEST(StaticScan_Bare, TrueBothTimesIsUnknownToItsUpstreamWithoutChangesAndStashes) {
    RecordedScan scan;
    scan.answers[isBareQuestion] = {"true", "true", "true"};
    scan.answers[changesQuestion] = {" M file.txt"};
    scan.answers[stashesQuestion] = {"stash@{0}\x1FWIP"};
    scan.answers[syncStatusQuestion] = {"# branch.upstream origin/main"};
    const auto repository = scan.scan();
    ASSERT_TRUE(repository);
    EXPECT_EQ(repository->syncStatus, GitSyncStatus(GitSyncStatus::Unknown{}));
    EXPECT_THAT(repository->uncommittedChanges, IsEmpty());
    EXPECT_THAT(repository->stashes, IsEmpty());
    EXPECT_EQ(repository->stashCount, 0);
    EXPECT_EQ(repository->branches.size(), 1U);
}

TEST(StaticScan_Path, LeadingTildeIsTheHome) {
    RecordedScan scan;
    scan.begin("~/project");
    ASSERT_TRUE(scan.repository);
    EXPECT_EQ(scan.repository->path, scan.path);
    EXPECT_EQ(scan.repository->name, "project");
}

TEST(StaticScan_Path, WithoutGitFolderNothingRunsAndNothingIsLogged) {
    RecordedScan scan;
    scan.begin(scan.folder.makeFolder("plain"));
    EXPECT_EQ(scan.completions, 1);
    EXPECT_EQ(scan.repository, std::nullopt);
    EXPECT_THAT(scan.invocations, IsEmpty());
    EXPECT_THAT(scan.observed.lines, IsEmpty());
    EXPECT_EQ(scan.simulation.loop.pendingTimers(), 0U);
}

TEST(StaticScan_Path, GitFolderThatIsADanglingLinkIsMissing) {
    RecordedScan scan;
    std::filesystem::create_symlink("/nonexistent", scan.folder.makeFolder("dangling") + "/.git");
    scan.begin(scan.folder / "dangling");
    EXPECT_EQ(scan.repository, std::nullopt);
    EXPECT_THAT(scan.invocations, IsEmpty());
}

TEST(StaticScan_Worktrees, EachLinkedOneIsAskedForItsChangesByItsOwnPathInOrder) {
    RecordedScan scan;
    scan.answers[worktreesQuestion] = {"worktree " + scan.path +
                                       "\nbranch refs/heads/main\n\n"
                                       "worktree /b\nbranch refs/heads/b\n\n"
                                       "worktree /bare\nbare\n\n"
                                       "worktree /a\ndetached\n"};
    scan.answers[changesQuestion] = {" M in b", "?? in a", "A  in main"};
    const auto repository = scan.scan();
    ASSERT_TRUE(repository);
    const auto commands = scan.commands();
    EXPECT_EQ(commands.at(8), worktreesQuestion);
    EXPECT_EQ(commands.at(9), changesQuestion);
    EXPECT_THAT(selectionOf(scan.invocations.at(9)), ElementsAre("-C", "/b"));
    EXPECT_EQ(scan.invocations.at(9).logRepoPath, "/b");
    EXPECT_EQ(commands.at(10), changesQuestion);
    EXPECT_THAT(selectionOf(scan.invocations.at(10)), ElementsAre("-C", "/a"));
    EXPECT_EQ(scan.invocations.at(10).logRepoPath, "/a");
    EXPECT_EQ(commands.at(11), tagsQuestion);
    ASSERT_EQ(repository->worktrees.size(), 4U);
    EXPECT_THAT(repository->worktrees[0].changes, IsEmpty());
    EXPECT_THAT(repository->worktrees[1].changes, ElementsAre(FileChange{"M", "in b"}));
    EXPECT_THAT(repository->worktrees[2].changes, IsEmpty());
    EXPECT_THAT(repository->worktrees[3].changes, ElementsAre(FileChange{"??", "in a"}));
    EXPECT_THAT(repository->uncommittedChanges, ElementsAre(FileChange{"A", "in main"}));
}

TEST(StaticScan_Worktrees, LinkedOnesAreAskedInTheNormalFormEvenWhereTheRepositoryIsNot) {
    RecordedScan scan;
    scan.answers[isBareQuestion] = {"true", "false", "false"};
    scan.answers[worktreesQuestion] = {"worktree " + scan.path + "\nbare\n\nworktree /linked\n"};
    scan.scan();
    EXPECT_THAT(selectionOf(scan.invocations.at(9)), ElementsAre("-C", "/linked"));
}

TEST(StaticScan_Snapshot, HoldsWhatAllCommandsAnswered) {
    RecordedScan scan;
    scan.answers[branchesQuestion] = {"dev\t \nmain\t*"};
    scan.answers[remotesQuestion] = {
        "origin\thttps://github.com/Some/Project.git (fetch)\n"
        "origin\thttps://github.com/Some/Project.git (push)\n"
        "fork\tgit@github.com:other/project.git (fetch)"};
    scan.answers[remoteBranchesQuestion] = {"origin/HEAD\norigin/main\nlocal"};
    scan.answers[syncStatusQuestion] = {"# branch.upstream origin/main\n# branch.ab +2 -3"};
    scan.answers[tagsQuestion] = {"v2\n\nv1"};
    scan.answers[stashesQuestion] = {"stash@{0}\x1FWIP on main\nstash@{1}\x1FOn dev: x"};
    scan.answers[changesQuestion] = {" M a\n?? b"};
    const GitRepository expected{
        .path = scan.path,
        .name = "project",
        .currentBranch = "main",
        .isDetachedHead = false,
        .branches = {{"dev", false}, {"main", true}},
        .remoteBranches = {"origin/main"},
        .gitHubOwnerRepos = {"some/project", "other/project"},
        .worktrees =
            {{.path = scan.path, .branch = "main", .commitHash = "0123", .isMainWorktree = true}},
        .tags = {"v2", "v1"},
        .uncommittedChanges = {{"M", "a"}, {"??", "b"}},
        .stashCount = 2,
        .stashes = {{"stash@{0}", "WIP on main"}, {"stash@{1}", "On dev: x"}},
        .syncStatus = GitSyncStatus::Diverged{"origin/main", 2, 3},
    };
    const auto repository = scan.scan();
    ASSERT_TRUE(repository);
    EXPECT_EQ(*repository, expected);
    EXPECT_THAT(scan.observed.lines, IsEmpty());
}

TEST(StaticScan_Snapshot, DetachedHeadHasItsShortHashAsBranch) {
    RecordedScan scan;
    scan.answers[headQuestion] = {"HEAD"};
    scan.answers[branchesQuestion] = {"(HEAD detached at abc1234)\t*\nmain\t "};
    const auto repository = scan.scan();
    ASSERT_TRUE(repository);
    EXPECT_TRUE(repository->isDetachedHead);
    EXPECT_EQ(repository->currentBranch, "abc1234");
    EXPECT_EQ(repository->branches.size(), 2U);
}

TEST(StaticScan_Snapshot, HasNoIssuesAndNoPullRequests) {
    RecordedScan scan;
    const auto repository = scan.scan();
    ASSERT_TRUE(repository);
    EXPECT_THAT(repository->issues, IsEmpty());
    EXPECT_THAT(repository->pullRequests, IsEmpty());
}

TEST(StaticScan_Dependencies, AreWhatIsRememberedOfTheExpandedPath) {
    RecordedScan scan;
    scan.dependencySummary = {
        .ecosystems = {{.manager = "npm", .status = DependencyHealth::checking}}};
    scan.begin("~/project");
    ASSERT_TRUE(scan.repository);
    EXPECT_EQ(scan.repository->dependencySummary, scan.dependencySummary);
    EXPECT_THAT(scan.dependencyQuestions, ElementsAre(scan.path));
}

TEST(StaticScan_Dependencies, OfAFailedScanAreNotAskedFor) {
    RecordedScan scan;
    scan.answers[headQuestion] = {std::nullopt};
    scan.scan();
    EXPECT_THAT(scan.dependencyQuestions, IsEmpty());
}

TEST(StaticScan_OwnerRepos, AreTheLowerCasedGitHubRemotesWithoutRepetition) {
    EXPECT_THAT(
        RepositoryScanner::gitHubOwnerRepos("origin\thttps://github.com/Owner/Repo.git (fetch)\n"
                                            "origin\thttps://github.com/Owner/Repo.git (push)\n"
                                            "upstream\tgit@github.com:UP/Stream.git (fetch)\n"),
        ElementsAre("owner/repo", "up/stream"));
}

TEST(StaticScan_OwnerRepos, LinesAreSplitAtBlanksAndTabsAlike) {
    EXPECT_THAT(RepositoryScanner::gitHubOwnerRepos("a \t  https://github.com/o/r\n"),
                ElementsAre("o/r"));
}

TEST(StaticScan_OwnerRepos, LineWithoutAnAddressIsSkipped) {
    EXPECT_THAT(RepositoryScanner::gitHubOwnerRepos("https://github.com/o/r\n\n \t\n"), IsEmpty());
}

TEST(StaticScan_OwnerRepos, OtherHostsAreLeftOut) {
    EXPECT_THAT(RepositoryScanner::gitHubOwnerRepos("origin\thttps://example.com/o/r (fetch)\n"),
                IsEmpty());
}

}  // namespace
}  // namespace tarnbeck
