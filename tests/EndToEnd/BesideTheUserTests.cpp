// Watching never gets into the way of the user's own git.
#include <atomic>
#include <thread>

#include "DependencyCommandRunner.h"
#include "RealScan.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using namespace testing;

constexpr int commits = 2000;

// Every fourth commit changes a file, and thereby the index. The first error ends it.
const std::string workOfAUser =
    "export GIT_AUTHOR_NAME=x GIT_AUTHOR_EMAIL=x@example.com GIT_COMMITTER_NAME=x "
    "GIT_COMMITTER_EMAIL=x@example.com GIT_CONFIG_COUNT=1 GIT_CONFIG_KEY_0=gc.auto "
    "GIT_CONFIG_VALUE_0=0; number=0; while [ $number -lt " +
    std::to_string(commits) +
    " ]; do number=$((number + 1)); "
    "if [ $((number % 4)) -eq 0 ]; then echo $number > file.txt; "
    "git commit -q -a -m $number || exit 1; "
    "else git commit -q --allow-empty -m $number || exit 1; fi; done";

TEST(BesideTheUser, ScanningWithoutPauseNeverMakesACommitFail) {
    RealScan real;
    const std::string path = makeRepository(real.folder / "project");
    std::atomic<bool> finished{false};
    int scans = 0;
    int failedScans = 0;
    std::thread scanner([&] {
        for (; !finished; ++scans) failedScans += real.scan(path) ? 0 : 1;
    });
    PosixProcessLauncher launcher;
    const DependencyCommandRunner user(real.folder / "home", launcher);
    const CommandResult result = user.runCommand(
        {.executable = "/bin/sh", .args = {"-c", workOfAUser}, .cwd = path, .timeout = 280s});
    finished = true;
    scanner.join();
    EXPECT_EQ(result, (CommandResult{.terminationStatus = 0}));
    EXPECT_EQ(git(path, {"rev-list", "--count", "HEAD"}), std::to_string(commits + 1) + "\n");
    EXPECT_GT(scans, 20);
    EXPECT_EQ(failedScans, 0) << ::testing::PrintToString(real.lines());
}

}  // namespace
}  // namespace tarnbeck
