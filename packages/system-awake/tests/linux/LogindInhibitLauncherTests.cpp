#include <csignal>
#include <cstdlib>
#include <utility>

#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>

#include "CaffeinateController.h"
#include "CompanionProgram.h"
#include "EndOfChild.h"
#include "LogindInhibitLauncher.h"
#include "OwnDescriptors.h"
#include "PrivateLogind.h"
#include "ProcessCaffeinateProcess.h"

namespace system_awake::testing {
namespace {

using tarnbeck::testing::CompanionProgram;
using tarnbeck::testing::PrivateBus;
using tarnbeck::testing::PrivateLogind;
using ::testing::HasSubstr;

using Started = std::variant<std::unique_ptr<CaffeinateProcess>, LaunchFailure>;

LogindInhibitLauncher makeLauncher() {
    return LogindInhibitLauncher(
        {.who = "Tester", .why = "Testing", .timeout = std::chrono::seconds(20)});
}

std::string failureOf(const Started& started) {
    const auto* failure = std::get_if<LaunchFailure>(&started);
    return failure ? failure->message : "started";
}

class LogindInhibitLauncher_Lock : public ::testing::Test {
  protected:
    Started start(std::vector<std::string> flags) { return launcher_.start(flags, getpid()); }
    void startChild(std::vector<std::string> flags = {"-i", "-m", "-s"}) {
        auto started = start(std::move(flags));
        ASSERT_EQ(failureOf(started), "started");
        process_ = std::get<std::unique_ptr<CaffeinateProcess>>(std::move(started));
        process_->setTerminationHandler(end_.handler());
    }
    pid_t child() const {
        return dynamic_cast<ProcessCaffeinateProcess&>(*process_).processIdentifier();
    }

    PrivateLogind logind_{MOCK_LOGIND};
    LogindInhibitLauncher launcher_ = makeLauncher();
    EndOfChild end_;
    std::unique_ptr<CaffeinateProcess> process_;
};

TEST_F(LogindInhibitLauncher_Lock, OfTheStandardFlagsIsAgainstIdlenessAndSleep) {
    startChild();
    EXPECT_EQ(logind_.nextEvent(), "taken idle:sleep|Tester|Testing|block");
}

TEST_F(LogindInhibitLauncher_Lock, OfTheDisplayAloneIsAgainstIdleness) {
    startChild({"-d"});
    EXPECT_EQ(logind_.nextEvent(), "taken idle|Tester|Testing|block");
}

TEST_F(LogindInhibitLauncher_Lock, OfSystemSleepAloneIsAgainstSleep) {
    startChild({"-m", "-s"});
    EXPECT_EQ(logind_.nextEvent(), "taken sleep|Tester|Testing|block");
}

TEST_F(LogindInhibitLauncher_Lock, OfTheDisksAloneIsMoreThanLogindHas) {
    EXPECT_EQ(failureOf(start({"-m"})), "logind has no lock that keeps disks awake");
}

TEST_F(LogindInhibitLauncher_Lock, IsForThisProcessOnly) {
    EXPECT_EQ(failureOf(launcher_.start({"-i"}, getppid())),
              "A lock can be bound to this process only");
}

TEST_F(LogindInhibitLauncher_Lock, NeedsNoNumberOfAProcess) {
    EXPECT_EQ(failureOf(launcher_.start({"-i"}, std::nullopt)), "started");
}

TEST_F(LogindInhibitLauncher_Lock, GoesWhenTheChildIsTerminated) {
    startChild();
    logind_.nextEvent();
    process_->terminate();
    EXPECT_EQ(logind_.nextEvent(), "released idle:sleep|Tester|Testing|block");
    EXPECT_TRUE(end_.wait());
    EXPECT_FALSE(process_->isRunning());
}

TEST_F(LogindInhibitLauncher_Lock, GoesWhenTheChildIsKilled) {
    startChild();
    logind_.nextEvent();
    kill(child(), SIGKILL);
    EXPECT_EQ(logind_.nextEvent(), "released idle:sleep|Tester|Testing|block");
    EXPECT_TRUE(end_.wait());
    EXPECT_FALSE(process_->isRunning());
}

TEST_F(LogindInhibitLauncher_Lock, StaysWithTheChildWhenNobodyHoldsTheProcess) {
    startChild();
    logind_.nextEvent();
    const pid_t number = child();
    process_.reset();
    EXPECT_EQ(kill(number, 0), 0);
    kill(number, SIGKILL);
    EXPECT_EQ(logind_.nextEvent(), "released idle:sleep|Tester|Testing|block");
}

TEST_F(LogindInhibitLauncher_Lock, LeavesNothingOpenHere) {
    startChild();  // what libraries open once is open now
    process_->terminate();
    ASSERT_TRUE(end_.wait());
    const auto before = tarnbeck::testing::openDescriptors();
    end_ = EndOfChild();
    startChild();
    EXPECT_EQ(tarnbeck::testing::openDescriptors(), before + 1);  // the end that the child reads
    process_->terminate();
    ASSERT_TRUE(end_.wait());
    EXPECT_EQ(tarnbeck::testing::openDescriptors(), before);
}

TEST_F(LogindInhibitLauncher_Lock, GoesWhenTheChildCantBeLaunched) {
    LogindInhibitLauncher launcher({.who = "Tester",
                                    .why = "Testing",
                                    .timeout = std::chrono::seconds(20),
                                    .holderExecutable = "/nowhere/cat"});
    EXPECT_EQ(failureOf(launcher.start({"-s"}, getpid())),
              "/nowhere/cat: No such file or directory");
    logind_.nextEvent();
    EXPECT_EQ(logind_.nextEvent(), "released sleep|Tester|Testing|block");
}

// Whoever is left behind by the application becomes a child of this process.
class LogindInhibitLauncher_Application : public ::testing::Test {
  protected:
    LogindInhibitLauncher_Application() {
        prctl(PR_SET_CHILD_SUBREAPER, 1);
        const auto child = application_.readPast("active ");
        child_ = child ? std::stoi(*child) : -1;
        EXPECT_EQ(logind_.nextEvent(), "taken idle:sleep|Application|Testing|block");
    }
    void expectEndOfChildAndLock() {
        int status = 0;
        EXPECT_EQ(waitpid(child_, &status, 0), child_);
        EXPECT_EQ(logind_.nextEvent(), "released idle:sleep|Application|Testing|block");
    }

    PrivateLogind logind_{MOCK_LOGIND};
    CompanionProgram application_{{AWAKE_APPLICATION}};
    pid_t child_ = -1;
};

TEST_F(LogindInhibitLauncher_Application, KilledTakesChildAndLockWithIt) {
    application_.signal(SIGKILL);
    EXPECT_EQ(application_.wait(), -SIGKILL);
    expectEndOfChildAndLock();
}

TEST_F(LogindInhibitLauncher_Application, EndingWithoutAStopTakesChildAndLockWithIt) {
    application_.closeInput();
    EXPECT_EQ(application_.wait(), 0);
    expectEndOfChildAndLock();
}

TEST(LogindInhibitLauncher_Failure, IsInTheWordsOfLogind) {
    const PrivateLogind logind(MOCK_LOGIND, {"--refuse", "Permission to sleep was denied"});
    EXPECT_EQ(failureOf(makeLauncher().start({"-i"}, getpid())), "Permission to sleep was denied");
}

TEST(LogindInhibitLauncher_Failure, WithoutLogindIsInTheWordsOfTheBus) {
    const PrivateBus bus;
    EXPECT_THAT(failureOf(makeLauncher().start({"-i"}, getpid())),
                HasSubstr("org.freedesktop.login1"));
}

TEST(LogindInhibitLauncher_Failure, WithoutABusSaysSo) {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere/bus", 1);
    EXPECT_EQ(failureOf(makeLauncher().start({"-i"}, getpid())),
              "The system bus can't be reached: No such file or directory");
}

TEST(LogindInhibitLauncher_Failure, ComesWhenLogindIsSilent) {
    const PrivateLogind logind(MOCK_LOGIND, {"--silent"});
    LogindInhibitLauncher launcher(
        {.who = "Tester", .why = "Testing", .timeout = std::chrono::milliseconds(50)});
    EXPECT_EQ(failureOf(launcher.start({"-i"}, getpid())), "logind did not answer within 50 ms");
}

TEST(LogindInhibitLauncher_Failure, ComesWhenTheBusDoesNotEvenGreet) {
    const tarnbeck::testing::TemporaryFolder folder;
    const std::string path = folder / "bus";
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const OwnedDescriptor listening(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    // The interface of sockets wants it so.
    const auto* general = reinterpret_cast<const sockaddr*>(&address);
    ASSERT_EQ(bind(listening.get(), general, sizeof address), 0);
    ASSERT_EQ(listen(listening.get(), 1), 0);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
    LogindInhibitLauncher launcher(
        {.who = "Tester", .why = "Testing", .timeout = std::chrono::milliseconds(50)});
    EXPECT_EQ(failureOf(launcher.start({"-i"}, getpid())), "logind did not answer within 50 ms");
}

TEST(LogindInhibitLauncher_Failure, LeavesNothingOpen) {
    const PrivateLogind logind(MOCK_LOGIND, {"--refuse", "no"});
    makeLauncher().start({"-i"}, getpid());  // what libraries open once is open now
    const auto before = tarnbeck::testing::openDescriptors();
    makeLauncher().start({"-i"}, getpid());
    EXPECT_EQ(tarnbeck::testing::openDescriptors(), before);
}

TEST(LogindInhibitLauncher_Controller, ReportsLogindsWordsAndTriesAgain) {
    LogindInhibitLauncher launcher = makeLauncher();
    CaffeinateController controller(launcher, getpid(), {.postToMainThread = [](const auto&) {}});
    {
        const PrivateLogind refusing(MOCK_LOGIND, {"--refuse", "Access denied"});
        controller.start(standardCaffeinateAssertions);
    }
    EXPECT_EQ(controller.state(), CaffeinateState{CaffeinateState::Failed{"Access denied"}});
    const PrivateLogind willing(MOCK_LOGIND);
    controller.toggle(standardCaffeinateAssertions);
    EXPECT_TRUE(controller.isActive());
    controller.stop();
}

}  // namespace
}  // namespace system_awake::testing
