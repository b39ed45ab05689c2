#include <filesystem>
#include <fstream>

#include "GitFixture.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

// A clone, and the repository that it was cloned from, which is one commit further.
class SyncEndToEnd : public ::testing::Test {
  protected:
    SyncEndToEnd() {
        makeRepository(folder / "origin");
        git("/", {"clone", "-q", folder / "origin", clone});
        commitFile(folder / "origin", "new.txt", "new\n");
    }
    ProgramResult sync(const std::string& path) {
        return run({.arguments = {"sync", path}, .home = folder.path()});
    }
    bool isUpToDate() const { return fs::exists(clone + "/new.txt"); }

    TemporaryFolder folder;
    const std::string clone = folder / "clone";
};

TEST_F(SyncEndToEnd, FetchesAndMovesTheBranchForward) {
    const auto result = sync(clone);
    EXPECT_EQ(result.output, "main is 1 commit further: up to date with origin/main\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(isUpToDate());
}

TEST_F(SyncEndToEnd, SecondTimeThereIsNothingToDo) {
    sync(clone);
    const auto result = sync(clone);
    EXPECT_EQ(result.output, "main is up to date with origin/main\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(SyncEndToEnd, TakesAPathInsideTheRepository) {
    fs::create_directory(clone + "/sub");
    EXPECT_EQ(sync(clone + "/sub").status, 0);
    EXPECT_TRUE(isUpToDate());
}

TEST_F(SyncEndToEnd, DoesNotWaitForPackageManagers) {
    folder.write("origin/.venv/bin/python3", "#!/bin/sh\ntouch \"$HOME/asked\"\nsleep 1000\n");
    folder.write("origin/requirements.txt", "requests\n");
    fs::permissions(folder / "origin/.venv/bin/python3", fs::perms::owner_all);
    git(folder / "origin", {"add", "--all"});
    git(folder / "origin", {"commit", "-q", "-m", "a project"});
    EXPECT_EQ(sync(clone).status, 0);
    EXPECT_TRUE(fs::exists(clone + "/.venv/bin/python3"));
    EXPECT_FALSE(fs::exists(folder / "asked"));
}

TEST_F(SyncEndToEnd, LeavesADirtyRepositoryAlone) {
    std::ofstream(clone + "/file.txt") << "mine\n";
    const auto result = sync(clone);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("there are uncommitted changes"));
    EXPECT_FALSE(isUpToDate());
    EXPECT_EQ(contentOf(clone + "/file.txt"), "mine\n");
}

TEST_F(SyncEndToEnd, UntrackedFileThatTheFastForwardWouldOverwriteStays) {
    std::ofstream(clone + "/new.txt") << "mine\n";
    const auto result = sync(clone);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("there are uncommitted changes"));
    EXPECT_EQ(contentOf(clone + "/new.txt"), "mine\n");
}

TEST_F(SyncEndToEnd, DivergedBranchIsLeftAlone) {
    commitFile(clone, "mine.txt", "mine\n");
    const auto result = sync(clone);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("have diverged (1 commit against 1 commit)"));
    EXPECT_FALSE(isUpToDate());
}

TEST_F(SyncEndToEnd, FailedFetchSaysWhatGitSaid) {
    fs::remove_all(folder / "origin");
    const auto result = sync(clone);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("git fetch --prune --quiet, exit status 128"));
}

TEST_F(SyncEndToEnd, IndexLockLeftBehindIsToldAndNothingChanges) {
    std::ofstream(clone + "/.git/index.lock") << "";
    const auto result = sync(clone);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("git pull --ff-only, exit status"));
    EXPECT_FALSE(isUpToDate());
    EXPECT_TRUE(fs::exists(clone + "/.git/index.lock"));
}

TEST_F(SyncEndToEnd, RepositoryWithoutUpstreamIsAFailure) {
    const auto result = sync(folder / "origin");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: " + (folder / "origin") + ": main has no upstream branch\n");
}

TEST_F(SyncEndToEnd, PathThatIsNoRepositoryIsAFailure) {
    const auto result = sync(folder.makeFolder("plain"));
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("is neither a git repository nor inside one"));
}

TEST_F(SyncEndToEnd, PathThatDoesNotExistIsAFailure) {
    const auto result = sync(folder / "gone");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("does not exist"));
}

TEST_F(SyncEndToEnd, WithoutPathIsWrongUsage) {
    EXPECT_EQ(run({.arguments = {"sync"}, .home = folder.path()}).status, 2);
}

}  // namespace
}  // namespace tarnbeck::testing
