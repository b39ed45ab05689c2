#include <csignal>
#include <thread>

#include "DependencyCommandRunner.h"
#include "OwnDescriptors.h"
#include "PosixProcessLauncher.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::hasChildren;
using testing::openDescriptors;

class RunCommandTest : public ::testing::Test {
  protected:
    CommandResult play(std::vector<std::string> role, std::chrono::nanoseconds timeout = 30s) {
        return run({.executable = BAD_CHILD, .args = std::move(role), .timeout = timeout});
    }
    CommandResult run(const Command& command) {
        return DependencyCommandRunner("/nonexistent", launcher_).runCommand(command);
    }

    PosixProcessLauncher launcher_;
};

using RunCommand_Result = RunCommandTest;
using RunCommand_LaunchError = RunCommandTest;
using RunCommand_Timeout = RunCommandTest;
using RunCommand_Pipes = RunCommandTest;
using RunCommand_Observer = RunCommandTest;
using RunCommand_Leaks = RunCommandTest;

TEST_F(RunCommand_Result, SuccessHasStatusZeroAndTheOutput) {
    EXPECT_EQ(play({"print", "{}"}), (CommandResult{.terminationStatus = 0, .stdout = "{}"}));
}

TEST_F(RunCommand_Result, StandardOutputLosesNewlinesAtItsEndsAndNoBlank) {
    EXPECT_EQ(play({"print", "\r\n  a \n b \t\n\n"}).stdout, "  a \n b \t");
}

TEST_F(RunCommand_Result, StandardErrorLosesAllWhiteSpaceAtItsEnds) {
    EXPECT_EQ(play({"fail", "4"}), (CommandResult{.terminationStatus = 4, .stderr = "went wrong"}));
}

TEST_F(RunCommand_Result, StandardOutputThatIsNotUtf8IsEmpty) {
    EXPECT_EQ(play({"broken-utf8"}), (CommandResult{.terminationStatus = 0}));
}

TEST_F(RunCommand_Result, StandardErrorThatIsNotUtf8IsEmpty) {
    EXPECT_EQ(play({"fail-broken-utf8"}), (CommandResult{.terminationStatus = 3}));
}

TEST_F(RunCommand_Result, OnlyNewlinesAreEmptyOutput) {
    EXPECT_EQ(play({"newlines"}), (CommandResult{.terminationStatus = 0}));
}

TEST_F(RunCommand_Result, DeathByASignalHasItsNumberAsStatus) {
    EXPECT_EQ(play({"die-by-signal", std::to_string(SIGUSR1)}),
              (CommandResult{.terminationStatus = SIGUSR1}));
}

TEST_F(RunCommand_Result, MissingToolBehindEnvIsAFailureAndNoLaunchError) {
    const CommandResult result = run(
        {.executable = "/usr/bin/env", .args = {"no-such-manager", "outdated"}, .timeout = 30s});
    EXPECT_EQ(result.terminationStatus, 127);
    EXPECT_EQ(result.launchError, std::nullopt);
}

TEST_F(RunCommand_LaunchError, MissingExecutableIsStatusMinusOneWithTheSystemsWords) {
    EXPECT_EQ(run({.executable = "/nonexistent/tool", .timeout = 30s}),
              (CommandResult{.terminationStatus = -1,
                             .launchError = "Failed to launch command: No such file or "
                                            "directory"}));
}

TEST_F(RunCommand_LaunchError, MissingWorkingFolderIsStatusMinusOneWithTheSystemsWords) {
    EXPECT_EQ(run({.executable = BAD_CHILD,
                   .args = {"print", "x"},
                   .cwd = "/nonexistent",
                   .timeout = 30s}),
              (CommandResult{.terminationStatus = -1,
                             .launchError = "Failed to launch command: No such file or "
                                            "directory"}));
}

TEST_F(RunCommand_LaunchError, FolderInPlaceOfAnExecutableIsStatusMinusOneWithTheSystemsWords) {
    EXPECT_EQ(run({.executable = "/usr", .timeout = 30s}),
              (CommandResult{.terminationStatus = -1,
                             .launchError = "Failed to launch command: Permission denied"}));
}

TEST_F(RunCommand_Timeout, IsSaidAndTheChildEndsBySigterm) {
    EXPECT_EQ(play({"hang"}, 300ms),
              (CommandResult{.terminationStatus = SIGTERM, .timedOut = true}));
}

TEST_F(RunCommand_Timeout, NotBeforeItsTime) {
    const auto start = steady_clock::now();
    play({"hang"}, 200ms);
    EXPECT_GE(steady_clock::now() - start, 200ms);
}

TEST_F(RunCommand_Timeout, OutputFromBeforeItIsPassedOn) {
    EXPECT_EQ(play({"print-and-hang", "early"}, 1s),
              (CommandResult{.terminationStatus = SIGTERM, .stdout = "early", .timedOut = true}));
}

TEST_F(RunCommand_Timeout, ChildThatIgnoresSigtermIsKilledAndTheCallReturns) {
    const auto start = steady_clock::now();
    EXPECT_EQ(play({"ignore-sigterm"}, 1s),
              (CommandResult{.terminationStatus = SIGKILL, .stdout = "ready", .timedOut = true}));
    EXPECT_LT(steady_clock::now() - start, 1s + 2500ms);
}

TEST_F(RunCommand_Timeout, ChildThatClosedItsPipesAndRunsOnIsTimedOutAllTheSame) {
    EXPECT_EQ(play({"close-and-hang"}, 300ms),
              (CommandResult{.terminationStatus = SIGTERM, .timedOut = true}));
}

TEST_F(RunCommand_Timeout, KilledChildThatClosedItsPipesIsStillAskedForItsStatus) {
    EXPECT_EQ(play({"close-and-ignore-sigterm"}, 500ms),
              (CommandResult{.terminationStatus = SIGKILL, .timedOut = true}));
}

TEST_F(RunCommand_Timeout, GrandchildThatKeepsThePipesMakesTheOutputEmpty) {
    const CommandResult result = play({"hang-with-grandchild", "6"}, 300ms);
    EXPECT_EQ(result, (CommandResult{.terminationStatus = SIGTERM, .timedOut = true}));
}

TEST_F(RunCommand_Pipes, ChildThatClosedItsPipesIsWaitedForAndAskedForItsStatus) {
    EXPECT_EQ(play({"close-and-exit-later"}), (CommandResult{.terminationStatus = 7}));
}

TEST_F(RunCommand_Pipes, GrandchildThatKeepsThemMakesTheOutputEmptyAfterTwoSeconds) {
    const auto start = steady_clock::now();
    EXPECT_EQ(play({"leave-grandchild", "6"}), (CommandResult{.terminationStatus = 0}));
    const auto duration = steady_clock::now() - start;
    EXPECT_GE(duration, 2s);
    EXPECT_LT(duration, 4s);
}

TEST_F(RunCommand_Pipes, FloodOnBothStreamsNeverBlocksTheChild) {
    const CommandResult result = play({"flood", "200"}, 120s);
    EXPECT_EQ(result.terminationStatus, 0);
    EXPECT_EQ(result.stdout.size(), std::size_t{200} << 20);
    EXPECT_EQ(result.stderr.size(), std::size_t{200} << 20);
}

TEST_F(RunCommand_Observer, GetsTheBytesOfBothStreamsUntrimmedOnTheCallingThread) {
    std::string seen;
    bool isCallingThread = true;
    const auto observe = [&, caller = std::this_thread::get_id()](std::string_view bytes) {
        isCallingThread = isCallingThread && std::this_thread::get_id() == caller;
        seen += bytes;
    };
    run({.executable = BAD_CHILD,
         .args = {"print", " out\n"},
         .timeout = 30s,
         .observer = observe});
    run({.executable = BAD_CHILD, .args = {"fail", "4"}, .timeout = 30s, .observer = observe});
    EXPECT_EQ(seen, " out\n  went wrong \xC2\xA0\n\n");
    EXPECT_TRUE(isCallingThread);
}

TEST_F(RunCommand_Observer, GetsWhatIsPrintedWhileTheChildStillRuns) {
    std::string seen;
    const CommandResult result = run({.executable = BAD_CHILD,
                                      .args = {"ignore-sigterm"},
                                      .timeout = 1s,
                                      .observer = [&](std::string_view bytes) { seen += bytes; }});
    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(seen, "ready\n");
}

TEST_F(RunCommand_Observer, GetsBytesThatTheResultLeavesOut) {
    std::string seen;
    const auto result = run({.executable = BAD_CHILD,
                             .args = {"broken-utf8"},
                             .timeout = 30s,
                             .observer = [&](std::string_view bytes) { seen += bytes; }});
    EXPECT_EQ(result.stdout, "");
    EXPECT_EQ(seen, "good \xC3\x28 bad\n");
}

TEST_F(RunCommand_Leaks, NoPathLeavesAZombieOrADescriptor) {
    const auto nothingLeftBy = [&](const Command& command) {
        const auto before = openDescriptors();
        run(command);
        EXPECT_EQ(openDescriptors(), before) << command.args.front();
        EXPECT_FALSE(hasChildren()) << command.args.front();
    };
    play({"silent"});
    nothingLeftBy({.executable = BAD_CHILD, .args = {"print", "x"}, .timeout = 30s});
    nothingLeftBy({.executable = BAD_CHILD, .args = {"fail", "1"}, .timeout = 30s});
    nothingLeftBy({.executable = BAD_CHILD, .args = {"die-by-signal", "9"}, .timeout = 30s});
    nothingLeftBy({.executable = BAD_CHILD, .args = {"hang"}, .timeout = 300ms});
    nothingLeftBy({.executable = BAD_CHILD, .args = {"ignore-sigterm"}, .timeout = 500ms});
    nothingLeftBy({.executable = BAD_CHILD, .args = {"close-and-hang"}, .timeout = 300ms});
    nothingLeftBy(
        {.executable = BAD_CHILD, .args = {"close-and-ignore-sigterm"}, .timeout = 500ms});
    nothingLeftBy({.executable = BAD_CHILD, .args = {"leave-grandchild", "4"}, .timeout = 30s});
    nothingLeftBy({.executable = "/nonexistent/tool", .args = {"missing"}, .timeout = 30s});
    nothingLeftBy(
        {.executable = BAD_CHILD, .args = {"print", "x"}, .cwd = "/nonexistent", .timeout = 30s});
}

}  // namespace
}  // namespace tarnbeck
