#include "ScanFailures.h"
#include "Simulation.h"
#include "TemporaryFolder.h"

namespace tarnbeck::cli {
namespace {

using namespace tarnbeck::testing;

TEST(ScanFailures_Words, FailedCommandGivesWhatGitSaidAndItsStatus) {
    EXPECT_EQ(failureInWords("FAIL(128) git status --porcelain at /x — fatal: bad index"),
              "fatal: bad index (git status --porcelain, exit status 128)");
}

TEST(ScanFailures_Words, OnlyTheFirstLineOfWhatGitSaidIsTaken) {
    EXPECT_EQ(failureInWords("FAIL(1) git status at /x — first\nsecond"),
              "first (git status, exit status 1)");
}

TEST(ScanFailures_Words, FailedCommandThatSaidNothing) {
    EXPECT_EQ(failureInWords("FAIL(9) git status at /x — "),
              "git failed (git status, exit status 9)");
}

TEST(ScanFailures_Words, EmptyAnswer) {
    EXPECT_EQ(failureInWords("EMPTY git rev-parse --abbrev-ref HEAD at /x (exit 0 but no stdout)"),
              "git rev-parse --abbrev-ref HEAD printed nothing");
}

TEST(ScanFailures_Words, TimeOut) {
    EXPECT_EQ(failureInWords("TIMEOUT git status --porcelain at /x"),
              "git status --porcelain took too long");
}

TEST(ScanFailures_Words, GitThatCantBeStarted) {
    EXPECT_EQ(failureInWords("EXCEPTION git status at /x — No such file or directory"),
              "git can't be started: No such file or directory");
}

TEST(ScanFailures_Words, BranchWithoutCommit) {
    EXPECT_EQ(failureInWords("FAIL(128) git rev-parse --abbrev-ref HEAD at /x — fatal: ambiguous "
                             "argument 'HEAD': unknown revision or path not in the working tree."),
              "has no commit yet on its current branch");
}

TEST(ScanFailures_Words, DamagedGitFolder) {
    EXPECT_EQ(failureInWords("FAIL(128) git rev-parse --abbrev-ref HEAD at /x — fatal: not a git "
                             "repository (or any of the parent directories): .git"),
              "its .git is damaged, git says: fatal: not a git repository (or any of the parent "
              "directories): .git");
}

TEST(ScanFailures_Words, PathIsFoundInEachFamily) {
    EXPECT_EQ(pathInFailure("FAIL(128) git status at /x y — fatal: bad at /z"), "/x y");
    EXPECT_EQ(pathInFailure("TIMEOUT git fetch --prune --quiet at /x"), "/x");
    EXPECT_EQ(pathInFailure("EMPTY git rev-parse HEAD at /x (exit 0 but no stdout)"), "/x");
    EXPECT_EQ(pathInFailure("nothing of the kind"), "");
}

class ScanFailures_Reasons : public ::testing::Test {
  protected:
    Simulation simulation;
    TemporaryFolder folder;
    ScanLog log{{.home = folder.path()}, simulation.loop, simulation.queues};
    ScanFailures failures{log};
};

TEST_F(ScanFailures_Reasons, MissingFolder) {
    EXPECT_EQ(failures.reasonFor(folder / "x"), "does not exist");
}

TEST_F(ScanFailures_Reasons, FolderWithoutGit) {
    EXPECT_EQ(failures.reasonFor(folder.makeFolder("x")),
              "is not a git repository (there is no .git)");
}

TEST_F(ScanFailures_Reasons, LastFailureBeforeTheScanGaveUp) {
    folder.makeFolder("x/.git");
    log.write("FAIL(1) git one at " + (folder / "x") + " — first");
    log.write("FAIL(2) git two at " + (folder / "x") + " — second");
    log.write("RETRY x: HEAD resolution failed — retrying in 250ms (attempt 1)");
    EXPECT_EQ(failures.reasonFor(folder / "x"), "second (git two, exit status 2)");
}

TEST_F(ScanFailures_Reasons, EachRepositoryKeepsItsOwn) {
    folder.makeFolder("x/.git");
    folder.makeFolder("y/.git");
    log.write("FAIL(1) git one at " + (folder / "x") + " — first");
    log.write("TIMEOUT git two at " + (folder / "y"));
    EXPECT_EQ(failures.reasonFor(folder / "x"), "first (git one, exit status 1)");
    EXPECT_EQ(failures.reasonFor(folder / "y"), "git two took too long");
}

TEST_F(ScanFailures_Reasons, RepositoriesThatAreScannedTogetherAreToldApart) {
    folder.makeFolder("x/.git");
    folder.makeFolder("y/.git");
    log.write("TIMEOUT git two at " + (folder / "y"));
    log.write("FAIL(1) git one at " + (folder / "x") + " — first");
    log.write("FAIL(1) git status at /somewhere/else — other");
    EXPECT_EQ(failures.reasonFor(folder / "x"), "first (git one, exit status 1)");
    EXPECT_EQ(failures.reasonFor(folder / "y"), "git two took too long");
}

TEST_F(ScanFailures_Reasons, FailedFetchOfTheNextOneIsNotTakenForThis) {
    folder.makeFolder("x/.git");
    log.write("FAIL(1) git one at " + (folder / "x") + " — first");
    log.write("FAIL(128) git fetch --prune --quiet at /y — fatal: no route");
    EXPECT_EQ(failures.reasonFor(folder / "x"), "first (git one, exit status 1)");
}

TEST_F(ScanFailures_Reasons, NothingLoggedIsSaidAsSuch) {
    folder.makeFolder("x/.git");
    EXPECT_EQ(failures.reasonFor(folder / "x"), "could not be scanned");
}

TEST_F(ScanFailures_Reasons, ForgottenOnesAreGone) {
    folder.makeFolder("x/.git");
    log.write("FAIL(1) git one at " + (folder / "x") + " — first");
    log.write("TIMEOUT git fetch --prune --quiet at /x");
    failures.forget();
    EXPECT_EQ(failures.reasonFor(folder / "x"), "could not be scanned");
    EXPECT_TRUE(failures.fetchProblems().empty());
}

TEST_F(ScanFailures_Reasons, FailedFetchIsAWordAndNoFailure) {
    log.write("FAIL(128) git fetch --prune --quiet at /y — fatal: no route");
    EXPECT_THAT(failures.fetchProblems(),
                ::testing::ElementsAre(SelectionProblem{
                    "/y",
                    "could not be fetched: fatal: no route (git fetch --prune --quiet, exit status "
                    "128)",
                    false}));
}

}  // namespace
}  // namespace tarnbeck::cli
