// What the machine's own git does to watched repositories, and what is told of it.
#include "FileSystemWatcher.h"
#include "GitFixture.h"
#include "WatchedRoot.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::git;

class FileEvents_Git : public testing::WatchedRoot {
  protected:
    void SetUp() override { testing::makeRepository(repository_); }
    void watchAsTheProgramDoes() { watch(FileSystemWatcher::defaultExcludes()); }
    std::string inGit(const std::string& name) const { return repository_ + "/.git/" + name; }

    // A branch with 200 folders of 100 files each below "many", which are not written to the disk.
    void commitManyFilesOn(const std::string& branch) {
        git(repository_, {"switch", "-q", "-c", branch});
        for (int file = 0; file < 100; ++file) write("repository/one/" + std::to_string(file));
        git(repository_, {"add", "one"});
        std::string tree = git(repository_, {"write-tree", "--prefix=one/"});
        tree.pop_back();
        for (int folder = 0; folder < 40; ++folder) {
            const std::string prefix = "--prefix=many/" + std::to_string(folder);
            git(repository_, {"read-tree", prefix, tree});
        }
        git(repository_, {"rm", "-q", "-r", "--cached", "one"});
        git(repository_, {"commit", "-q", "-m", "Add many files"});
        fs::remove_all(at("repository/one"));
        git(repository_, {"switch", "-q", "--force", "main"});
    }

    std::string repository_ = root_ + "/repository";
};

TEST_F(FileEvents_Git, ReadingCommandsTellNothing) {
    git(repository_, {"worktree", "add", "-q", folder_ / "tree", "-b", "tree"});
    write("repository/untracked");
    write("repository/file.txt", "changed");
    watchAsTheProgramDoes();
    // The flag does what GIT_OPTIONAL_LOCKS=0 does, which the program gives its commands.
    const std::vector<std::vector<std::string>> commands = {
        {"status", "--porcelain=v2", "--branch"},
        {"branch", "--all", "--format=%(refname)%(upstream:track)"},
        {"stash", "list"},
        {"worktree", "list", "--porcelain"},
        {"log", "-1", "--format=%H"},
        {"diff", "--numstat", "HEAD"},
        {"rev-parse", "--is-bare-repository", "HEAD"},
        {"for-each-ref"}};
    for (auto arguments : commands) {
        arguments.insert(arguments.begin(), "--no-optional-locks");
        git(repository_, arguments);
    }
    waitUntilTold();
    EXPECT_EQ(told(), std::set<std::string>());
}

TEST_F(FileEvents_Git, CommitTellsHeadsIndexAndReferences) {
    watchAsTheProgramDoes();
    testing::commitFile(repository_, "new", "text");
    EXPECT_TRUE(events_.waitFor(repository_ + "/new"));
    EXPECT_TRUE(events_.waitFor(inGit("index")));
    EXPECT_TRUE(events_.waitFor(inGit("refs/heads/main")));
    EXPECT_TRUE(events_.waitFor(inGit("logs/HEAD")));
}

TEST_F(FileEvents_Git, SwitchOfTheBranchTellsTheHead) {
    git(repository_, {"branch", "other"});
    watchAsTheProgramDoes();
    git(repository_, {"switch", "-q", "other"});
    EXPECT_TRUE(events_.waitFor(inGit("HEAD")));
}

TEST_F(FileEvents_Git, StagingTellsTheIndex) {
    write("repository/file.txt", "changed");
    watchAsTheProgramDoes();
    git(repository_, {"add", "file.txt"});
    EXPECT_TRUE(events_.waitFor(inGit("index")));
}

TEST_F(FileEvents_Git, StashTellsItsReference) {
    write("repository/file.txt", "changed");
    watchAsTheProgramDoes();
    git(repository_, {"stash", "-q"});
    EXPECT_TRUE(events_.waitFor(inGit("refs/stash")));
    EXPECT_TRUE(events_.waitFor(inGit("logs/refs/stash")));
}

TEST_F(FileEvents_Git, FetchPackedReferencesAndSettingsAreTold) {
    testing::makeRepository(folder_ / "upstream");
    git(repository_, {"remote", "add", "origin", folder_ / "upstream"});
    watchAsTheProgramDoes();
    git(repository_, {"fetch", "-q", "origin"});
    git(repository_, {"pack-refs", "--all"});
    git(repository_, {"config", "user.name", "Somebody"});
    EXPECT_TRUE(events_.waitFor(inGit("FETCH_HEAD")));
    EXPECT_TRUE(events_.waitFor(inGit("refs/remotes/origin/main")));
    EXPECT_TRUE(events_.waitFor(inGit("packed-refs")));
    EXPECT_TRUE(events_.waitFor(inGit("config")));
}

TEST_F(FileEvents_Git, RebaseThatStopsAndGoesOnIsTold) {
    git(repository_, {"switch", "-q", "-c", "topic"});
    testing::commitFile(repository_, "file.txt", "topic");
    testing::commitFile(repository_, "another", "topic");
    git(repository_, {"switch", "-q", "main"});
    testing::commitFile(repository_, "file.txt", "main");
    git(repository_, {"switch", "-q", "topic"});
    watchAsTheProgramDoes();
    git(repository_, {"rebase", "main"}, true);
    EXPECT_TRUE(events_.waitFor(inGit("rebase-merge")));
    EXPECT_TRUE(events_.waitFor(inGit("ORIG_HEAD")));
    write("repository/file.txt", "both");
    git(repository_, {"add", "file.txt"});
    startAfresh();
    git(repository_, {"-c", "core.editor=true", "rebase", "--continue"});
    EXPECT_TRUE(events_.waitFor(inGit("refs/heads/topic")));
    EXPECT_TRUE(events_.waitFor(inGit("rebase-merge")));
}

TEST_F(FileEvents_Git, MergeThatStopsIsTold) {
    git(repository_, {"switch", "-q", "-c", "topic"});
    testing::commitFile(repository_, "file.txt", "topic");
    git(repository_, {"switch", "-q", "main"});
    testing::commitFile(repository_, "file.txt", "main");
    watchAsTheProgramDoes();
    git(repository_, {"merge", "topic"}, true);
    EXPECT_TRUE(events_.waitFor(inGit("MERGE_HEAD")));
}

TEST_F(FileEvents_Git, WorktreeThatIsAddedIsTold) {
    watchAsTheProgramDoes();
    git(repository_, {"worktree", "add", "-q", folder_ / "tree", "-b", "tree"});
    EXPECT_TRUE(events_.waitFor(inGit("worktrees/tree/HEAD")));
}

TEST_F(FileEvents_Git, CheckoutOfThousandsOfFilesEndsInAWatchedTree) {
    commitManyFilesOn("big");
    watchAsTheProgramDoes();
    const std::size_t before = testing::ownWatches();
    git(repository_, {"switch", "-q", "big"});
    startAfresh();
    EXPECT_EQ(testing::ownWatches(), before + 41);
    EXPECT_TRUE(events_.waitFor(write("repository/many/39/99", "changed")));
    git(repository_, {"switch", "-q", "--force", "main"});
    startAfresh();
    EXPECT_EQ(testing::ownWatches(), before);
}

TEST_F(FileEvents_Git, TenThousandFilesWrittenAtOnceTellOneLossABatch) {
    makeFolder("repository/many");
    watchAsTheProgramDoes();
    for (int file = 0; file < 10000; ++file) {
        // All of it at once even where the disk is slow: the first thousand wait for the reader.
        if (file == 0) events_.hold();
        write("repository/many/" + std::to_string(file));
        if (file == 1000) events_.letGo();
    }
    ASSERT_TRUE(events_.waitForLoss());
    waitUntilTold();
    for (const auto& batch : events_.batches()) {
        EXPECT_TRUE(batch.content.paths.empty() || !batch.content.eventsWereLost);
        EXPECT_LE(batch.content.paths.size(), 1024);
    }
}

}  // namespace
}  // namespace tarnbeck
