#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "CaffeinateProcessLauncher.h"
#include "EndOfChild.h"
#include "OwnDescriptors.h"
#include "ProcessCaffeinateProcess.h"
#include "TemporaryFolder.h"

namespace system_awake::testing {
namespace {

using ::testing::StartsWith;

class CaffeinateProcessLauncher_Child : public ::testing::Test {
  protected:
    CaffeinateProcessLauncher_Child() { mkfifo(report_.c_str(), 0600); }
    ~CaffeinateProcessLauncher_Child() override {
        if (process_) process_->terminate();
    }

    // The child runs when this returns what it told.
    std::string start(std::vector<std::string> flags, std::optional<std::int32_t> boundTo) {
        flags.push_back(report_);
        take(launcher_.start(flags, boundTo));
        std::ostringstream told;
        told << std::ifstream(report_).rdbuf();
        return told.str();
    }
    void take(std::variant<std::unique_ptr<CaffeinateProcess>, LaunchFailure> started) {
        const auto* failure = std::get_if<LaunchFailure>(&started);
        ASSERT_FALSE(failure) << failure->message;
        process_ = std::get<std::unique_ptr<CaffeinateProcess>>(std::move(started));
    }
    pid_t child() const {
        return dynamic_cast<ProcessCaffeinateProcess&>(*process_).processIdentifier();
    }
    // Kills it and waits until it has ended, whether or not its end was noticed here.
    void killChild() const {
        const pid_t number = child();
        kill(number, SIGKILL);
        siginfo_t information{};
        waitid(P_PID, static_cast<id_t>(number), &information, WEXITED | WNOWAIT);
    }

    tarnbeck::testing::TemporaryFolder folder_;
    std::string report_ = folder_ / "report";
    CaffeinateProcessLauncher launcher_{STAND_IN};
    std::unique_ptr<CaffeinateProcess> process_;
};

TEST_F(CaffeinateProcessLauncher_Child, IsToldTheProcessBeforeTheFlags) {
    EXPECT_THAT(start({"-i", "-s"}, 4711), StartsWith("-w 4711 -i -s |"));
}

TEST_F(CaffeinateProcessLauncher_Child, IsToldTheFlagsAloneWhenItIsNotBound) {
    EXPECT_THAT(start({"-i", "-s"}, std::nullopt), StartsWith("-i -s |"));
}

TEST_F(CaffeinateProcessLauncher_Child, InheritsNothing) {
    const int inheritable = open("/dev/null", O_RDONLY);
    EXPECT_EQ(start({}, std::nullopt), "| 3 descriptors, 0 variables");
    close(inheritable);
}

TEST_F(CaffeinateProcessLauncher_Child, ThatCantBeLaunchedIsToldInTheSystemsWords) {
    CaffeinateProcessLauncher launcher("/nowhere/caffeinate");
    const auto started = launcher.start({"-i"}, 4711);
    ASSERT_TRUE(std::holds_alternative<LaunchFailure>(started));
    EXPECT_EQ(std::get<LaunchFailure>(started).message,
              "/nowhere/caffeinate: No such file or directory");
}

TEST_F(CaffeinateProcessLauncher_Child, ThatCantBeLaunchedLeavesNothingBehind) {
    const auto before = tarnbeck::testing::openDescriptors();
    CaffeinateProcessLauncher("/nowhere/caffeinate").start({"-i"}, 4711);
    EXPECT_EQ(tarnbeck::testing::openDescriptors(), before);
    EXPECT_FALSE(tarnbeck::testing::hasChildren());
}

TEST_F(CaffeinateProcessLauncher_Child, HasAnIdOfItsOwn) {
    start({}, std::nullopt);
    const std::string first = process_->id();
    process_->terminate();
    start({}, std::nullopt);
    EXPECT_EQ(first.size(), 36);
    EXPECT_NE(process_->id(), first);
}

TEST_F(CaffeinateProcessLauncher_Child, RunsUntilItIsTerminated) {
    EndOfChild end;
    start({}, std::nullopt);
    process_->setTerminationHandler(end.handler());
    EXPECT_TRUE(process_->isRunning());
    process_->terminate();
    EXPECT_TRUE(end.wait());
    EXPECT_FALSE(process_->isRunning());
}

TEST_F(CaffeinateProcessLauncher_Child, ThatWasKilledRunsNoMoreAtOnce) {
    start({}, std::nullopt);
    killChild();
    EXPECT_FALSE(process_->isRunning());
}

TEST_F(CaffeinateProcessLauncher_Child, ThatWasKilledIsTold) {
    EndOfChild end;
    start({}, std::nullopt);
    process_->setTerminationHandler(end.handler());
    killChild();
    EXPECT_TRUE(end.wait());
}

TEST_F(CaffeinateProcessLauncher_Child, ThatEndedBeforeAnybodyListenedIsToldAllTheSame) {
    EndOfChild first;
    EndOfChild second;
    take(launcher_.start({"exit"}, std::nullopt));
    process_->setTerminationHandler(first.handler());
    ASSERT_TRUE(first.wait());
    process_->setTerminationHandler(second.handler());
    EXPECT_TRUE(second.cameAlready());
}

TEST_F(CaffeinateProcessLauncher_Child, IsReapedBeforeItsEndIsTold) {
    const auto before = tarnbeck::testing::openDescriptors();
    EndOfChild end;
    start({}, std::nullopt);
    process_->setTerminationHandler(end.handler());
    process_->terminate();
    ASSERT_TRUE(end.wait());
    EXPECT_FALSE(tarnbeck::testing::hasChildren());
    EXPECT_EQ(tarnbeck::testing::openDescriptors(), before);
}

TEST_F(CaffeinateProcessLauncher_Child, MayBeAskedToEndWhenItHasAlready) {
    EndOfChild end;
    start({}, std::nullopt);
    process_->setTerminationHandler(end.handler());
    killChild();
    ASSERT_TRUE(end.wait());
    process_->terminate();
    EXPECT_FALSE(process_->isRunning());
}

TEST_F(CaffeinateProcessLauncher_Child, MayBeLetGoByItsOwnHandler) {
    EndOfChild end;
    start({}, std::nullopt);
    const pid_t number = child();
    process_->setTerminationHandler([this, told = end.handler()] {
        process_.reset();
        told();
    });
    kill(number, SIGKILL);
    EXPECT_TRUE(end.wait());
}

// The pipe is open here for as long as the child is waited for.
TEST_F(CaffeinateProcessLauncher_Child, ThatNobodyHoldsRunsOnAndIsReapedInTheEnd) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    take(ProcessCaffeinateProcess::launch({.executable = STAND_IN,
                                           .arguments = {report_},
                                           .keptUntilTheEnd = OwnedDescriptor(ends[1])}));
    std::ifstream(report_).get();
    bool wasTold = false;
    process_->setTerminationHandler([&] { wasTold = true; });
    const pid_t number = child();
    process_.reset();
    EXPECT_EQ(kill(number, 0), 0);
    kill(number, SIGKILL);
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 0);
    EXPECT_FALSE(tarnbeck::testing::hasChildren());
    EXPECT_FALSE(wasTold);
    close(ends[0]);
}

}  // namespace
}  // namespace system_awake::testing
