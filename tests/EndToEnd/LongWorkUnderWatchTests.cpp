// Watching while a user's git works for a long time: it is never made to fail, and its end is
// shown.
#include <filesystem>
#include <fstream>
#include <thread>

#include <fmt/format.h>

#include "DependencyCommandRunner.h"
#include "LiveWatch.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using namespace testing;
namespace fs = std::filesystem;

class LongWorkUnderWatch : public LiveWatch {
  protected:
    PosixProcessLauncher launcherOfUser_;
    const std::string identity_ =
        "export GIT_AUTHOR_NAME=x GIT_AUTHOR_EMAIL=x@example.com GIT_COMMITTER_NAME=x "
        "GIT_COMMITTER_EMAIL=x@example.com GIT_CONFIG_COUNT=1 GIT_CONFIG_KEY_0=gc.auto "
        "GIT_CONFIG_VALUE_0=0; ";
};

TEST_F(LongWorkUnderWatch, RebaseOf300CommitsUnderWatchSucceedsAndItsEndIsShown) {
    const std::string path = make("a");
    git(path, {"checkout", "-q", "-b", "topic"});
    const DependencyCommandRunner user(folder_ / "home", launcherOfUser_);
    const auto run = [&](const std::string& script) {
        const CommandResult result = user.runCommand({.executable = "/bin/sh",
                                                      .args = {"-c", identity_ + script},
                                                      .cwd = path,
                                                      .timeout = 200s});
        EXPECT_EQ(result.terminationStatus, 0) << result.stderr;
    };
    run("for i in $(seq 300); do echo $i > f$((i % 40)); git add .; git commit -q -m $i; done; "
        "git checkout -q main; echo base > base; git add .; git commit -q -m base; "
        "git checkout -q topic");
    start();
    std::thread rebase([&] { run("git rebase -q main && git tag done"); });
    EXPECT_TRUE(waitUntil([&] { return at(path).tags.size() == 1; }));
    rebase.join();
    EXPECT_EQ(at(path).currentBranch, "topic");
    EXPECT_THAT(at(path).uncommittedChanges, ::testing::IsEmpty());
    EXPECT_EQ(git(path, {"rev-list", "--count", "main..topic"}), "300\n");
}

TEST_F(LongWorkUnderWatch,
       CheckoutBetweenBranchesThatDifferInThousandsOfFilesSucceedsAndItsEndIsShown) {
    const std::string path = make("a");
    git(path, {"checkout", "-q", "-b", "large"});
    for (int folder = 0; folder < 40; ++folder) {
        const std::string name = fmt::format("{}/folder{}", path, folder);
        fs::create_directory(name);
        for (int file = 0; file < 100; ++file) {
            std::ofstream(fmt::format("{}/{}.txt", name, file)) << folder << ' ' << file;
        }
    }
    git(path, {"add", "."});
    git(path, {"commit", "-q", "-m", "large"});
    start();
    git(path, {"checkout", "-q", "main"});
    EXPECT_TRUE(waitUntil([&] { return at(path).currentBranch == "main"; }));
    git(path, {"checkout", "-q", "large"});
    EXPECT_TRUE(waitUntil(
        [&] { return at(path).currentBranch == "large" && at(path).uncommittedChanges.empty(); }));
    std::ofstream(path + "/folder39/99.txt") << "other";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
}

}  // namespace
}  // namespace tarnbeck
