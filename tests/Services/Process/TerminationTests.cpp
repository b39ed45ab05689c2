// What both runners send to a child that takes too long, and when.
#include <chrono>

#include "DependencyCommandRunner.h"
#include "GitCommand.h"
#include "ObservedLog.h"
#include "StubbornLauncher.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::EndsBy;
using testing::Sent;
using testing::StubbornLauncher;

constexpr auto timeout = 20ms;

void runGit(ProcessLauncher& launcher) {
    testing::Simulation simulation;
    testing::ObservedLog observed{simulation};
    GitCommand({.home = "/"}, launcher, observed.log).run({.timeout = timeout});
}

void runTool(ProcessLauncher& launcher) {
    DependencyCommandRunner("/", launcher).runCommand({.timeout = timeout});
}

class BothRunners_Termination : public ::testing::TestWithParam<void (*)(ProcessLauncher&)> {
  protected:
    Sent sentTo(EndsBy endsBy) {
        Sent sent;
        StubbornLauncher launcher(endsBy, sent);
        start_ = steady_clock::now();
        GetParam()(launcher);
        return sent;
    }

    steady_clock::time_point start_;
};

TEST_P(BothRunners_Termination, ChildThatEndsInTimeIsSentNothing) {
    const Sent sent = sentTo(EndsBy::itself);
    EXPECT_FALSE(sent.terminate);
    EXPECT_FALSE(sent.kill);
}

TEST_P(BothRunners_Termination, SigtermComesAtTheTimeoutAndNotBefore) {
    const Sent sent = sentTo(EndsBy::sigterm);
    ASSERT_TRUE(sent.terminate);
    EXPECT_GE(*sent.terminate - start_, timeout);
}

TEST_P(BothRunners_Termination, ChildThatEndsBySigtermIsNotKilled) {
    EXPECT_FALSE(sentTo(EndsBy::sigterm).kill);
}

TEST_P(BothRunners_Termination, SigkillFollows50MillisecondsAfterSigterm) {
    const Sent sent = sentTo(EndsBy::sigkill);
    ASSERT_TRUE(sent.terminate && sent.kill);
    EXPECT_GE(*sent.kill - *sent.terminate, 50ms);
    EXPECT_LT(*sent.kill - *sent.terminate, 1s);  // a busy machine is late
}

INSTANTIATE_TEST_SUITE_P(Each, BothRunners_Termination, ::testing::Values(&runGit, &runTool),
                         [](const auto& instance) {
                             return instance.param == &runGit ? "Git" : "OtherTools";
                         });

}  // namespace
}  // namespace tarnbeck
