#include <chrono>

#include <sys/stat.h>

#include "GhListCommand.h"
#include "ObservedLog.h"
#include "OwnDescriptors.h"
#include "PosixProcessLauncher.h"
#include "RecordedGh.h"
#include "StubbornLauncher.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using ::testing::ElementsAre;
using testing::EndsBy;
using testing::hasChildren;
using ::testing::IsEmpty;
using testing::openDescriptors;
using testing::RecordedGh;
using testing::Sent;

constexpr GhListCommand::List issues{
    .resource = "issue", .ownerRepo = "owner/repo", .jsonFields = "number,title"};

class GhListCommandTest : public ::testing::Test {
  protected:
    std::optional<std::string> run(const GhTimeouts& timeouts = {}) {
        return commandOf({RecordedGh::executable}, timeouts)->run(issues);
    }

    std::unique_ptr<GhListCommand> commandOf(std::vector<std::string> executables,
                                             const GhTimeouts& timeouts = {}) {
        return std::make_unique<GhListCommand>(
            GhListCommand::Options{
                .home = gh_.home(), .executables = std::move(executables), .timeouts = timeouts},
            launcher_, log_.log);
    }

    const std::vector<std::string>& lines() const { return log_.lines; }

    RecordedGh gh_;
    testing::Simulation simulation_;
    testing::ObservedLog log_{simulation_};
    PosixProcessLauncher launcher_;
};

using GhListCommand_Call = GhListCommandTest;
using GhListCommand_Executable = GhListCommandTest;
using GhListCommand_Launch = GhListCommandTest;
using GhListCommand_Fail = GhListCommandTest;
using GhListCommand_Timeout = GhListCommandTest;
using GhListCommand_Pipes = GhListCommandTest;
using GhListCommand_Leaks = GhListCommandTest;

TEST_F(GhListCommand_Call, HasTheseArgumentsAndTheseFourVariablesAndNoOther) {
    run();
    EXPECT_EQ(gh_.seen("issue", 1),
              "argument=issue\nargument=list\nargument=--repo\nargument=owner/repo\n"
              "argument=--state=open\nargument=--json\nargument=number,title\n"
              "argument=--limit\nargument=100\n"
              "environment=HOME=" +
                  gh_.home() +
                  "\nenvironment=PATH=/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:"
                  "/sbin\nenvironment=LC_ALL=C\nenvironment=GH_NO_UPDATE_NOTIFIER=1\n");
}

TEST_F(GhListCommand_Call, GivesTheBytesOfStandardOutputAsTheyAreAndWritesNoLine) {
    gh_.plays("issue", "print", "\n [] \xFF\n");
    EXPECT_EQ(run(), "\n [] \xFF\n");
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GhListCommand_Call, NothingPrintedIsAnAnswer) {
    gh_.plays("issue", "print");
    EXPECT_EQ(run(), "");
}

TEST_F(GhListCommand_Executable, FirstOfThoseThatThereAreServes) {
    const auto command = commandOf({"/nonexistent/gh", RecordedGh::executable, "/usr/bin/false"});
    EXPECT_EQ(command->run(issues), "[]");
}

TEST_F(GhListCommand_Executable, FileThatMayNotBeExecutedAndFolderArePassedOver) {
    const std::string text = log_.folder.write("gh", "#!/bin/sh\nexit 1\n");
    const std::string folder = log_.folder.makeFolder("folder/gh");
    EXPECT_EQ(commandOf({text, folder, RecordedGh::executable})->run(issues), "[]");
}

TEST_F(GhListCommand_Executable, NoneAtAllIsNothingWithOneLineForEver) {
    const auto command = commandOf({"/nonexistent/gh", "/nonexistent/too/gh"});
    EXPECT_EQ(command->run(issues), std::nullopt);
    EXPECT_EQ(command->run(issues), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("GITHUB gh CLI not found in known paths"));
}

TEST_F(GhListCommand_Executable, VerdictThatThereIsNoneHoldsThoughOneIsInstalledLater) {
    const std::string path = log_.folder / "bin/gh";
    const auto command = commandOf({path});
    EXPECT_EQ(command->run(issues), std::nullopt);
    log_.folder.makeFolder("bin");
    std::filesystem::copy(RecordedGh::executable, path);
    EXPECT_EQ(command->run(issues), std::nullopt);
    EXPECT_EQ(commandOf({path})->run(issues), "[]");
}

TEST_F(GhListCommand_Launch, FileThatTheSystemCannotRunGivesItsWords) {
    const std::string path = log_.folder.write("gh", "#!/nonexistent/interpreter\n");
    ASSERT_EQ(chmod(path.c_str(), 0755), 0);
    EXPECT_EQ(commandOf({path})->run(issues), std::nullopt);
    EXPECT_THAT(lines(),
                ElementsAre("GITHUB gh launch failed for issue owner/repo: No such file or "
                            "directory"));
}

TEST_F(GhListCommand_Fail, MissingAuthenticationHasItsStatusAndTrimmedWords) {
    gh_.plays("issue", "fail 4",
              "\nTo get started with GitHub CLI, please run:  gh auth login \xC2\xA0\n\n");
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("GITHUB FAIL(4) gh issue list for owner/repo — To get started "
                                     "with GitHub CLI, please run:  gh auth login"));
}

TEST_F(GhListCommand_Fail, StandardErrorThatIsNotUtf8IsLeftOut) {
    gh_.plays("issue", "fail 1", "broken \xC3\x28");
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("GITHUB FAIL(1) gh issue list for owner/repo — "));
}

TEST_F(GhListCommand_Timeout, WritesTheTimeoutLineAndGivesNothing) {
    gh_.plays("issue", "hang");
    EXPECT_EQ(run({.run = 200ms}), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("GITHUB TIMEOUT gh issue list for owner/repo"));
}

TEST_F(GhListCommand_Timeout, WhatWasPrintedBeforeItIsDropped) {
    gh_.plays("issue", "print-and-hang", "[]");
    EXPECT_EQ(run({.run = 300ms}), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("GITHUB TIMEOUT gh issue list for owner/repo"));
}

TEST_F(GhListCommand_Timeout, ChildThatIgnoresSigtermIsKilledAndTheCallReturns) {
    gh_.plays("issue", "ignore-sigterm", "ready");
    const auto start = steady_clock::now();
    EXPECT_EQ(run({.run = 1s}), std::nullopt);
    EXPECT_LT(steady_clock::now() - start, 1s + 3500ms);
    EXPECT_FALSE(hasChildren());
    EXPECT_THAT(lines(), ElementsAre("GITHUB TIMEOUT gh issue list for owner/repo"));
}

TEST_F(GhListCommand_Timeout, IsThirtySecondsWithTheseGracesUnlessToldOtherwise) {
    const GhTimeouts timeouts;
    EXPECT_EQ(timeouts.run, 30s);
    EXPECT_EQ(timeouts.termination, 50ms);
    EXPECT_EQ(timeouts.killing, 1s);
    EXPECT_EQ(timeouts.drain, 2s);
}

class GhListCommand_Termination : public GhListCommandTest {
  protected:
    Sent sentTo(EndsBy endsBy) {
        Sent sent;
        testing::StubbornLauncher launcher(endsBy, sent);
        start_ = steady_clock::now();
        GhListCommand({.home = "/", .executables = {"/bin/sh"}, .timeouts = {.run = timeout}},
                      launcher, log_.log)
            .run(issues);
        return sent;
    }

    static constexpr auto timeout = 20ms;
    steady_clock::time_point start_;
};

TEST_F(GhListCommand_Termination, ChildThatEndsInTimeIsSentNothing) {
    const Sent sent = sentTo(EndsBy::itself);
    EXPECT_FALSE(sent.terminate);
    EXPECT_FALSE(sent.kill);
}

TEST_F(GhListCommand_Termination, SigtermComesAtTheTimeoutAndNotBefore) {
    const Sent sent = sentTo(EndsBy::sigterm);
    ASSERT_TRUE(sent.terminate);
    EXPECT_GE(*sent.terminate - start_, timeout);
}

TEST_F(GhListCommand_Termination, ChildThatEndsBySigtermIsNotKilled) {
    EXPECT_FALSE(sentTo(EndsBy::sigterm).kill);
}

TEST_F(GhListCommand_Termination, SigkillFollows50MillisecondsAfterSigterm) {
    const Sent sent = sentTo(EndsBy::sigkill);
    ASSERT_TRUE(sent.terminate && sent.kill);
    EXPECT_GE(*sent.kill - *sent.terminate, 50ms);
    EXPECT_LT(*sent.kill - *sent.terminate, 1s);  // a busy machine is late
}

TEST_F(GhListCommand_Pipes, MegabyteOfErrorsNeverBlocksTheChild) {
    gh_.plays("issue", "print-after-many-errors", "[1]");
    EXPECT_EQ(run(), "[1]");
}

TEST_F(GhListCommand_Pipes, GrandchildThatKeepsThemMakesTheOutputEmpty) {
    gh_.plays("issue", "leave-grandchild", "[1]");
    const auto start = steady_clock::now();
    EXPECT_EQ(run({.drain = 200ms}), "");
    EXPECT_GE(steady_clock::now() - start, 200ms);
}

TEST_F(GhListCommand_Leaks, NoPathLeavesAZombieOrADescriptor) {
    const auto nothingLeftBy = [&](const std::string& role, std::string_view content) {
        gh_.plays("issue", role, content);
        const auto before = openDescriptors();
        run({.run = 500ms, .drain = 200ms});
        EXPECT_EQ(openDescriptors(), before) << role;
        EXPECT_FALSE(hasChildren()) << role;
    };
    run();
    nothingLeftBy("print", "[]");
    nothingLeftBy("fail 1", "no");
    nothingLeftBy("hang", "");
    nothingLeftBy("ignore-sigterm", "ready");
    nothingLeftBy("leave-grandchild", "[]");
}

}  // namespace
}  // namespace tarnbeck
