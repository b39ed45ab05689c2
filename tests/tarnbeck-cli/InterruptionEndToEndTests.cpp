// Ending the program while a git of its own is busy.
#include <csignal>
#include <filesystem>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "FileDescriptor.h"
#include "GitFixture.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

// A repository whose `git status` hangs in a hook. The hook and its own child hold a pipe open, so
// that the test sees when it has begun, and when the last of them is gone.
class InterruptionEndToEnd : public ::testing::Test {
  protected:
    InterruptionEndToEnd() {
        repository = makeRepository(folder / "projects/stuck");
        const std::string pipe = folder / "pipe";
        mkfifo(pipe.c_str(), 0600);
        const std::string hook = folder.write("hook",
                                              "#!/bin/sh\n"
                                              "exec 3>'" +
                                                  pipe +
                                                  "'\n"
                                                  "echo begun >&3\n"
                                                  "sleep 1000 & wait\n");
        std::filesystem::permissions(hook, std::filesystem::perms::owner_all);
        git(repository, {"config", "core.fsmonitor", hook});
        pipe_ = FileDescriptor(open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    }

    // Until the hook runs.
    void waitForHook() {
        pollfd stream{pipe_.get(), POLLIN, 0};
        ASSERT_EQ(poll(&stream, 1, 60'000), 1) << "git never began";
        std::array<char, 64> buffer{};
        ASSERT_EQ(read(pipe_.get(), buffer.data(), buffer.size()), 6);
    }

    // Until nobody holds the pipe.
    bool hookEnds() {
        pollfd stream{pipe_.get(), POLLIN, 0};
        char byte = 0;
        return poll(&stream, 1, 10'000) == 1 && read(pipe_.get(), &byte, 1) == 0;
    }

    void expectEndedBy(RunningProgram& program, int signal) {
        const auto begin = std::chrono::steady_clock::now();
        const auto result = program.wait();
        EXPECT_EQ(result.signal, signal);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
        EXPECT_TRUE(hookEnds()) << "a child was left behind";
    }

    TemporaryFolder folder;
    std::string repository;

  private:
    FileDescriptor pipe_;
};

TEST_F(InterruptionEndToEnd, InterruptEndsStatusAtOnceWithAllItsChildren) {
    RunningProgram program({.arguments = {"status", repository}, .home = folder.path()});
    waitForHook();
    program.signal(SIGINT);
    expectEndedBy(program, SIGINT);
}

TEST_F(InterruptionEndToEnd, InterruptEndsWatchAtOnceWithAllItsChildren) {
    RunningProgram program({.arguments = {"watch", "--json"}, .home = folder.path()});
    waitForHook();
    program.signal(SIGINT);
    expectEndedBy(program, SIGINT);
}

TEST_F(InterruptionEndToEnd, TerminationEndsStatusAtOnceWithAllItsChildren) {
    RunningProgram program({.arguments = {"status", repository}, .home = folder.path()});
    waitForHook();
    program.signal(SIGTERM);
    expectEndedBy(program, SIGTERM);
}

TEST_F(InterruptionEndToEnd, ControlCOnTheTerminalEndsStatusAtOnceWithAllItsChildren) {
    RunningProgram program({.arguments = {"status", repository},
                            .home = folder.path(),
                            .output = ProgramCall::Output::terminal});
    waitForHook();
    program.type('\003');
    expectEndedBy(program, SIGINT);
}

TEST_F(InterruptionEndToEnd, InterruptPrintsNoHalfATable) {
    RunningProgram program({.arguments = {"status", "--json", repository}, .home = folder.path()});
    waitForHook();
    program.signal(SIGINT);
    EXPECT_EQ(program.wait().output, "");
}

}  // namespace
}  // namespace tarnbeck::testing
