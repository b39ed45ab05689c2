// A change on disk shows by itself.
#include <filesystem>
#include <fstream>

#include <fmt/format.h>

#include "LiveWatch.h"

namespace tarnbeck {
namespace {

using namespace testing;
namespace fs = std::filesystem;

TEST_F(LiveWatch, WrittenFileShowsByItself) {
    const std::string path = make("a");
    start();
    std::ofstream(path + "/file.txt") << "other\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
}

TEST_F(LiveWatch, FileInANewFolderShowsByItself) {
    const std::string path = make("a");
    start();
    fs::create_directories(path + "/one/two/three");
    std::ofstream(path + "/one/two/three/new.txt") << "new\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
}

TEST_F(LiveWatch, BranchCommitTagAndStashShowByThemselves) {
    const std::string path = make("a");
    start();
    git(path, {"checkout", "-q", "-b", "topic"});
    git(path, {"tag", "v1"});
    std::ofstream(path + "/file.txt") << "other\n";
    git(path, {"stash", "-q"});
    EXPECT_TRUE(waitUntil([&] {
        return at(path).currentBranch == "topic" && at(path).tags.size() == 1 &&
               at(path).stashCount == 1;
    }));
}

TEST_F(LiveWatch, ChangeInALinkedWorktreeThatIsMadeMeanwhileShowsInItsRepository) {
    const std::string path = make("a");
    start();
    const std::string tree = folder_ / "tree";
    git(path, {"worktree", "add", "-q", "-b", "topic", tree});
    ASSERT_TRUE(waitUntil([&] { return at(path).worktrees.size() == 2 && streamsOpened_ == 2; }));
    std::ofstream(tree + "/file.txt") << "other\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).worktrees[1].changes.size() == 1; }));
}

TEST_F(LiveWatch, RepositoryThatIsMovedAwayAndBackIsSeenAgain) {
    const std::string path = make("a");
    start();
    fs::rename(path, path + "-away");
    fs::rename(path + "-away", path);
    std::ofstream(path + "/file.txt") << "other\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
}

TEST_F(LiveWatch, RepositoryThatIsDeletedKeepsItsLastPictureAndIsBackWithTheNextScan) {
    const std::string path = make("a");
    const std::string other = make("b");
    start();
    fs::remove_all(path);
    std::ofstream(other + "/file.txt") << "other\n";
    ASSERT_TRUE(waitUntil([&] { return at(other).uncommittedChanges.size() == 1; }));
    EXPECT_EQ(at(path).currentBranch, "main");
    makeRepository(path);
    git(path, {"checkout", "-q", "-b", "again"});
    scanner_->requestRefresh({});
    EXPECT_TRUE(waitUntil([&] { return at(path).currentBranch == "again"; }));
}

TEST_F(LiveWatch, IndexLockLeftBehindDoesNotStopThePicture) {
    const std::string path = make("a");
    start();
    std::ofstream(path + "/.git/index.lock") << "";
    std::ofstream(path + "/file.txt") << "other\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
    EXPECT_TRUE(fs::exists(path + "/.git/index.lock"));
}

TEST_F(LiveWatch, FileWithoutUtf8InItsNameShowsByItself) {
    const std::string path = make("a");
    start();
    std::ofstream(path + "/\xff\xfe") << "new\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
}

TEST_F(LiveWatch, TenThousandFilesWrittenAtOnceShowInTheEnd) {
    const std::string path = make("a");
    start();
    fs::create_directory(path + "/many");
    for (int number = 0; number < 10'000; ++number) {
        std::ofstream(fmt::format("{}/many/{}.txt", path, number)) << number;
    }
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 10'000; }));
}

}  // namespace
}  // namespace tarnbeck
