#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <memory>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include "FileSystem.h"
#include "OwnDescriptors.h"
#include "PosixProcessLauncher.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::hasChildren;
using testing::openDescriptors;

std::unique_ptr<ChildProcess> launch(ProcessLauncher& launcher, std::vector<std::string> role) {
    auto child = launcher.launch({.executable = BAD_CHILD, .arguments = std::move(role)});
    if (!child) throw std::runtime_error(child.error());
    return *std::move(child);
}

bool waitForExit(ChildProcess& child) {
    pollfd exit{child.exitDescriptor(), POLLIN, 0};
    return poll(&exit, 1, 30'000) == 1;
}

// Waits for the first line, so that the child has put its signals into place.
std::string firstLineOf(const FileDescriptor& pipe) {
    std::string line;
    for (char byte = 0; read(pipe.get(), &byte, 1) == 1 && byte != '\n';) line += byte;
    return line;
}

// Whether everybody who could write to the pipe has ended.
bool reachesItsEnd(const FileDescriptor& pipe) {
    std::array<char, 64> bytes{};
    pollfd readable{pipe.get(), POLLIN, 0};
    while (poll(&readable, 1, 30'000) == 1) {
        if (read(pipe.get(), bytes.data(), bytes.size()) == 0) return true;
    }
    return false;
}

class PosixProcessLauncherTest : public ::testing::Test {
  protected:
    // The next test finds no child of this one.
    void TearDown() override {
        while (waitpid(-1, nullptr, 0) > 0) {
        }
    }

    PosixProcessLauncher launcher_;
};

using PosixProcessLauncher_Child = PosixProcessLauncherTest;
using PosixProcessLauncher_Launch = PosixProcessLauncherTest;
using PosixProcessLauncher_EndAllSessions = PosixProcessLauncherTest;

TEST_F(PosixProcessLauncher_Child, RunsUntilItExits) {
    const auto child = launch(launcher_, {"hang"});
    EXPECT_TRUE(child->isRunning());
    child->terminate();
    EXPECT_TRUE(waitForExit(*child));
    EXPECT_FALSE(child->isRunning());
    EXPECT_EQ(child->terminationStatus(), SIGTERM);
}

TEST_F(PosixProcessLauncher_Child, StatusIsTheOneItExitedWith) {
    const auto child = launch(launcher_, {"fail", "42"});
    ASSERT_TRUE(waitForExit(*child));
    EXPECT_FALSE(child->isRunning());
    EXPECT_EQ(child->terminationStatus(), 42);
}

TEST_F(PosixProcessLauncher_Child, SigtermCanBeIgnoredAndSigkillCannot) {
    const auto child = launch(launcher_, {"ignore-sigterm"});
    EXPECT_EQ(firstLineOf(child->takeStandardOutput()), "ready");
    child->terminate();
    EXPECT_TRUE(child->isRunning());
    child->kill();
    ASSERT_TRUE(waitForExit(*child));
    EXPECT_FALSE(child->isRunning());
    EXPECT_EQ(child->terminationStatus(), SIGKILL);
}

TEST_F(PosixProcessLauncher_Child, EndsItselfAloneAndNotItsGrandchildren) {
    const auto child = launch(launcher_, {"hang-with-grandchild", "1"});
    const FileDescriptor output = child->takeStandardOutput();
    firstLineOf(output);
    child->kill();
    ASSERT_TRUE(waitForExit(*child));
    pollfd readable{output.get(), POLLIN, 0};
    EXPECT_EQ(poll(&readable, 1, 0), 0) << "the grandchild must still hold the pipe";
}

TEST_F(PosixProcessLauncher_Child, IsNeverSignalledAfterItWasReaped) {
    const auto child = launch(launcher_, {"silent"});
    ASSERT_TRUE(waitForExit(*child));
    EXPECT_FALSE(child->isRunning());
    child->terminate();
    child->kill();
    EXPECT_EQ(child->terminationStatus(), 0);
}

TEST_F(PosixProcessLauncher_Child, ReapedBySomebodyElseCountsAsEnded) {
    const auto child = launch(launcher_, {"silent"});
    ASSERT_TRUE(waitForExit(*child));
    waitpid(child->processIdentifier(), nullptr, 0);
    EXPECT_FALSE(child->isRunning());
    EXPECT_EQ(child->terminationStatus(), -1);
}

TEST_F(PosixProcessLauncher_Child, EndedOneIsReapedWhenItGoes) {
    auto child = launch(launcher_, {"silent"});
    ASSERT_TRUE(waitForExit(*child));
    child.reset();
    EXPECT_FALSE(hasChildren());
}

TEST_F(PosixProcessLauncher_Child, RunningOneIsReapedByALaterLaunchWhenItGoes) {
    auto child = launch(launcher_, {"hang"});
    const FileDescriptor output = child->takeStandardOutput();
    const pid_t identifier = child->processIdentifier();
    child.reset();
    kill(identifier, SIGKILL);
    siginfo_t information{};
    waitid(P_PID, static_cast<id_t>(identifier), &information, WEXITED | WNOWAIT);
    const auto other = launch(launcher_, {"silent"});
    EXPECT_EQ(waitpid(identifier, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(PosixProcessLauncher_Launch, FailureSaysTheSystemsWordsAndLeavesNothing) {
    const auto before = openDescriptors();
    const auto child = launcher_.launch({.executable = "/nonexistent/tool"});
    ASSERT_FALSE(child);
    EXPECT_EQ(child.error(), "No such file or directory");
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(hasChildren());
}

TEST_F(PosixProcessLauncher_Launch, UsesNoSearchPath) {
    EXPECT_FALSE(launcher_.launch({.executable = "sh", .environment = {"PATH=/bin:/usr/bin"}}));
}

// As long as this lives, the process may open `few` more descriptors and none beyond.
class ScarceDescriptors {
  public:
    explicit ScarceDescriptors(std::size_t few) {
        getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit scarce{std::min<rlim_t>(before_.rlim_cur, 64), before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &scarce);
        while (true) {
            FileDescriptor next(open("/dev/null", O_RDONLY | O_CLOEXEC));
            if (!next) break;
            held_.push_back(std::move(next));
        }
        held_.resize(held_.size() - few);
    }
    ScarceDescriptors(const ScarceDescriptors&) = delete;
    ScarceDescriptors& operator=(const ScarceDescriptors&) = delete;
    ~ScarceDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }

  private:
    rlimit before_{};
    std::vector<FileDescriptor> held_;
};

constexpr std::size_t enoughDescriptors = 4;  // two pipes

auto launchWithFewDescriptors(ProcessLauncher& launcher, std::size_t few) {
    const ScarceDescriptors scarce(few);
    return launcher.launch({.executable = BAD_CHILD, .arguments = {"silent"}});
}

// The sanitizers, too, need descriptors for what they see for the first time.
void showEverythingOnce(ProcessLauncher& launcher) {
    launch(launcher, {"silent"});
    systemErrorText(EMFILE);
}

TEST_F(PosixProcessLauncher_Launch, WithoutFreeDescriptorsFailsWithTheSystemsWords) {
    showEverythingOnce(launcher_);
    EXPECT_TRUE(launchWithFewDescriptors(launcher_, enoughDescriptors));
    for (std::size_t few = 0; few < enoughDescriptors; ++few) {
        const auto child = launchWithFewDescriptors(launcher_, few);
        ASSERT_FALSE(child) << few;
        EXPECT_EQ(child.error(), "Too many open files") << few;
    }
}

TEST_F(PosixProcessLauncher_Launch, WithoutFreeDescriptorsLeavesNone) {
    showEverythingOnce(launcher_);
    const auto before = openDescriptors();
    for (std::size_t few = 0; few < enoughDescriptors; ++few)
        EXPECT_FALSE(launchWithFewDescriptors(launcher_, few));
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(PosixProcessLauncher_Launch, WorksInAProgramThatWasStartedWithoutStandardStreams) {
    std::array<FileDescriptor, 3> saved;
    for (int stream = 0; stream < 3; ++stream) {
        saved[static_cast<std::size_t>(stream)] =
            FileDescriptor(fcntl(stream, F_DUPFD_CLOEXEC, 10));
        close(stream);
    }
    auto child = launch(launcher_, {"print", "to standard output\n"});
    const std::string line = firstLineOf(child->takeStandardOutput());
    waitForExit(*child);
    child.reset();
    for (int stream = 0; stream < 3; ++stream) {
        dup2(saved[static_cast<std::size_t>(stream)].get(), stream);
    }
    EXPECT_EQ(line, "to standard output");
}

TEST_F(PosixProcessLauncher_Launch, ManyThreadsLaunchAtOnceAndNoChildHoldsAnothersPipe) {
    std::atomic<int> ended{0};
    const auto hanging = launch(launcher_, {"hang"});
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&] {
            for (int round = 0; round < 10; ++round) {
                const auto longOne = launch(launcher_, {"hang"});
                const auto child = launch(launcher_, {"silent"});
                // Held open by `longOne`, it would never come to its end.
                if (reachesItsEnd(child->takeStandardOutput())) ++ended;
                waitForExit(*child);
                longOne->kill();
                waitForExit(*longOne);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(ended, 80);
    hanging->kill();
    waitForExit(*hanging);
}

TEST_F(PosixProcessLauncher_EndAllSessions, EndsChildrenAndTheirGrandchildren) {
    const auto child = launch(launcher_, {"hang-with-grandchild", "600"});
    const FileDescriptor output = child->takeStandardOutput();
    firstLineOf(output);
    launcher_.endAllSessions();
    EXPECT_TRUE(waitForExit(*child));
    EXPECT_TRUE(reachesItsEnd(output));
}

TEST_F(PosixProcessLauncher_EndAllSessions, EndsChildrenThatIgnoreSigterm) {
    const auto child = launch(launcher_, {"ignore-sigterm"});
    firstLineOf(child->takeStandardOutput());
    const auto start = steady_clock::now();
    launcher_.endAllSessions();
    ASSERT_TRUE(waitForExit(*child));
    EXPECT_LT(steady_clock::now() - start, 2s);
    EXPECT_FALSE(child->isRunning());
    EXPECT_EQ(child->terminationStatus(), SIGKILL);
}

TEST_F(PosixProcessLauncher_EndAllSessions, EndsChildrenThatNobodyWaitsForAnyMore) {
    auto child = launch(launcher_, {"hang"});
    const FileDescriptor output = child->takeStandardOutput();
    child.reset();
    launcher_.endAllSessions();
    EXPECT_TRUE(reachesItsEnd(output));
}

TEST_F(PosixProcessLauncher_EndAllSessions, NothingIsLaunchedFromThenOn) {
    launcher_.endAllSessions();
    const auto child = launcher_.launch({.executable = BAD_CHILD, .arguments = {"silent"}});
    ASSERT_FALSE(child);
    EXPECT_EQ(child.error(), "the program is ending");
    EXPECT_FALSE(hasChildren());
}

TEST_F(PosixProcessLauncher_EndAllSessions, ThreadsThatWaitForChildrenGoOn) {
    const auto child = launch(launcher_, {"hang"});
    std::thread waiting([&] {
        waitForExit(*child);
        EXPECT_FALSE(child->isRunning());
        EXPECT_EQ(child->terminationStatus(), SIGTERM);
    });
    launcher_.endAllSessions();
    waiting.join();
}

TEST_F(PosixProcessLauncher_EndAllSessions, MeetsThreadsThatGoOnLaunching) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            while (true) {
                auto child = launcher_.launch({.executable = BAD_CHILD, .arguments = {"hang"}});
                if (!child) return;
                waitForExit(**child);
            }
        });
    }
    launcher_.endAllSessions();
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace tarnbeck
