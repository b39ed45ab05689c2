#include <csignal>
#include <functional>
#include <optional>
#include <thread>

#include "GitCommand.h"
#include "ObservedLog.h"
#include "OwnDescriptors.h"
#include "PosixProcessLauncher.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using ::testing::ElementsAre;
using testing::hasChildren;
using ::testing::IsEmpty;
using testing::openDescriptors;

struct Limits {
    bool allowEmpty = false;
    std::chrono::nanoseconds timeout = 30s;
};

class GitCommandTest : public ::testing::Test {
  protected:
    // Lets the bad child play its role; `logical` is what log lines call it.
    std::optional<std::string> run(std::vector<std::string> role, const Limits& limits = {},
                                   const std::string& executable = BAD_CHILD) {
        const GitCommand git({.home = "/nonexistent", .executable = executable}, launcher_,
                             log_.log);
        return git.run({.executableArgs = std::move(role),
                        .logRepoPath = "/my/repo",
                        .logicalArgs = {"status", "--porcelain", "-uall"},
                        .timeout = limits.timeout,
                        .allowEmpty = limits.allowEmpty});
    }

    const std::vector<std::string>& lines() const { return log_.lines; }

    testing::Simulation simulation_;
    testing::ObservedLog log_{simulation_};
    PosixProcessLauncher launcher_;
};

using GitCommand_Success = GitCommandTest;
using GitCommand_Empty = GitCommandTest;
using GitCommand_Fail = GitCommandTest;
using GitCommand_Exception = GitCommandTest;
using GitCommand_Timeout = GitCommandTest;
using GitCommand_Pipes = GitCommandTest;
using GitCommand_Leaks = GitCommandTest;

TEST_F(GitCommand_Success, GivesStandardOutputAndWritesNoLine) {
    EXPECT_EQ(run({"print", "main"}), "main");
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitCommand_Success, LosesNewlinesAtBothEndsAndNoBlank) {
    EXPECT_EQ(run({"print", "\n\r\n M a.txt\n M b.txt \t\n\n"}), " M a.txt\n M b.txt \t");
}

TEST_F(GitCommand_Success, DropsALeadingByteOrderMark) {
    EXPECT_EQ(run({"print", "\xEF\xBB\xBFmain\n"}), "main");
}

TEST_F(GitCommand_Empty, NothingPrintedIsNothingWithTheEmptyLine) {
    EXPECT_EQ(run({"silent"}), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("EMPTY git status --porcelain -uall at /my/repo (exit 0 but "
                                     "no stdout)"));
}

TEST_F(GitCommand_Empty, OnlyNewlinesCountAsNothingPrinted) {
    EXPECT_EQ(run({"newlines"}), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("EMPTY git status --porcelain -uall at /my/repo (exit 0 but "
                                     "no stdout)"));
}

TEST_F(GitCommand_Empty, OnlyBlanksAreAnAnswer) {
    EXPECT_EQ(run({"print", "  \n"}), "  ");
}

TEST_F(GitCommand_Empty, BrokenUtf8CountsAsNothingPrinted) {
    EXPECT_EQ(run({"broken-utf8"}), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("EMPTY git status --porcelain -uall at /my/repo (exit 0 but "
                                     "no stdout)"));
}

TEST_F(GitCommand_Empty, AllowedEmptinessIsTheEmptyTextAndWritesNoLine) {
    for (const char* role : {"silent", "newlines", "broken-utf8"}) {
        EXPECT_EQ(run({role}, {.allowEmpty = true}), "") << role;
    }
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitCommand_Fail, WritesTheStatusAndStandardErrorWithoutBlanksAtItsEnds) {
    EXPECT_EQ(run({"fail", "128"}), std::nullopt);
    EXPECT_THAT(lines(),
                ElementsAre("FAIL(128) git status --porcelain -uall at /my/repo — went wrong"));
}

TEST_F(GitCommand_Fail, IsAFailureWhereEmptinessIsAllowedToo) {
    EXPECT_EQ(run({"fail", "1"}, {.allowEmpty = true}), std::nullopt);
    EXPECT_THAT(lines(),
                ElementsAre("FAIL(1) git status --porcelain -uall at /my/repo — went wrong"));
}

TEST_F(GitCommand_Fail, StandardErrorThatIsNotUtf8IsLeftOut) {
    EXPECT_EQ(run({"fail-broken-utf8"}), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("FAIL(3) git status --porcelain -uall at /my/repo — "));
}

TEST_F(GitCommand_Fail, DeathByASignalHasItsNumberAsStatus) {
    EXPECT_EQ(run({"die-by-signal", "9"}), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("FAIL(9) git status --porcelain -uall at /my/repo — "));
}

TEST_F(GitCommand_Exception, MissingExecutableGivesTheSystemsWords) {
    EXPECT_EQ(run({"print", "x"}, {}, "/nonexistent/git"), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("EXCEPTION git status --porcelain -uall at /my/repo — No such "
                                     "file or directory"));
}

TEST_F(GitCommand_Exception, FileThatCannotBeExecutedGivesTheSystemsWords) {
    const std::string path = log_.folder.write("git", "#!/bin/sh\n");
    EXPECT_EQ(run({"print", "x"}, {}, path), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("EXCEPTION git status --porcelain -uall at /my/repo — "
                                     "Permission denied"));
}

TEST_F(GitCommand_Timeout, WritesTheTimeoutLineAndGivesNothing) {
    EXPECT_EQ(run({"hang"}, {.allowEmpty = true, .timeout = 100ms}), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("TIMEOUT git status --porcelain -uall at /my/repo"));
}

TEST_F(GitCommand_Timeout, NotBeforeItsTime) {
    const auto start = steady_clock::now();
    run({"hang"}, {.timeout = 200ms});
    EXPECT_GE(steady_clock::now() - start, 200ms);
}

TEST_F(GitCommand_Timeout, WhatWasPrintedBeforeItIsDropped) {
    EXPECT_EQ(run({"print-and-hang", "early"}, {.timeout = 300ms}), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("TIMEOUT git status --porcelain -uall at /my/repo"));
}

TEST_F(GitCommand_Timeout, ChildThatIgnoresSigtermIsKilledAndTheCallReturns) {
    const auto start = steady_clock::now();
    EXPECT_EQ(run({"ignore-sigterm"}, {.timeout = 1s}), std::nullopt);
    EXPECT_LT(steady_clock::now() - start, 1s + 2500ms);
    EXPECT_FALSE(hasChildren());
    EXPECT_THAT(lines(), ElementsAre("TIMEOUT git status --porcelain -uall at /my/repo"));
}

TEST_F(GitCommand_Timeout, ChildThatClosedItsPipesAndRunsOnIsTimedOutAllTheSame) {
    EXPECT_EQ(run({"close-and-hang"}, {.allowEmpty = true, .timeout = 300ms}), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("TIMEOUT git status --porcelain -uall at /my/repo"));
}

TEST_F(GitCommand_Timeout, GrandchildThatKeepsThePipesDelaysTheCallByOneSecond) {
    const auto start = steady_clock::now();
    EXPECT_EQ(run({"hang-with-grandchild", "6"}, {.timeout = 300ms}), std::nullopt);
    const auto duration = steady_clock::now() - start;
    EXPECT_GE(duration, 1300ms);
    EXPECT_LT(duration, 3500ms);
}

TEST_F(GitCommand_Pipes, ChildThatClosedItsPipesIsWaitedForAndAskedForItsStatus) {
    EXPECT_EQ(run({"close-and-exit-later"}), std::nullopt);
    EXPECT_THAT(lines(), ElementsAre("FAIL(7) git status --porcelain -uall at /my/repo — "));
}

TEST_F(GitCommand_Pipes, GrandchildThatKeepsThemMakesTheOutputEmptyAfterTwoSeconds) {
    const auto start = steady_clock::now();
    EXPECT_EQ(run({"leave-grandchild", "6"}), std::nullopt);
    const auto duration = steady_clock::now() - start;
    EXPECT_GE(duration, 2s);
    EXPECT_LT(duration, 4s);
    EXPECT_THAT(lines(), ElementsAre("EMPTY git status --porcelain -uall at /my/repo (exit 0 but "
                                     "no stdout)"));
}

TEST_F(GitCommand_Pipes, FloodOnBothStreamsNeverBlocksTheChild) {
    const auto output = run({"flood", "200"}, {.timeout = 120s});
    ASSERT_TRUE(output);
    EXPECT_EQ(output->size(), std::size_t{200} << 20);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(GitCommand_Pipes, ManyCallsAtOnceDoNotMeet) {
    std::vector<std::thread> threads;
    std::vector<std::optional<std::string>> answers(16);
    for (std::size_t index = 0; index < answers.size(); ++index) {
        threads.emplace_back([&, index] {
            answers[index] = run({"print", std::to_string(index)});
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (std::size_t index = 0; index < answers.size(); ++index) {
        EXPECT_EQ(answers[index], std::to_string(index));
    }
}

TEST_F(GitCommand_Leaks, NoPathLeavesAZombieOrADescriptor) {
    const auto nothingLeftBy = [&](std::vector<std::string> role, const std::string& executable) {
        const std::string name = role.front();
        const auto before = openDescriptors();
        run(std::move(role), {.timeout = 500ms}, executable);
        EXPECT_EQ(openDescriptors(), before) << name;
        EXPECT_FALSE(hasChildren()) << name;
    };
    run({"silent"});
    nothingLeftBy({"print", "x"}, BAD_CHILD);
    nothingLeftBy({"fail", "1"}, BAD_CHILD);
    nothingLeftBy({"silent"}, BAD_CHILD);
    nothingLeftBy({"die-by-signal", "9"}, BAD_CHILD);
    nothingLeftBy({"hang"}, BAD_CHILD);
    nothingLeftBy({"ignore-sigterm"}, BAD_CHILD);
    nothingLeftBy({"close-and-hang"}, BAD_CHILD);
    nothingLeftBy({"close-and-ignore-sigterm"}, BAD_CHILD);
    nothingLeftBy({"leave-grandchild", "4"}, BAD_CHILD);
    nothingLeftBy({"print", "x"}, "/nonexistent/git");
}

}  // namespace
}  // namespace tarnbeck
