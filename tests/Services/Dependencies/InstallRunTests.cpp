#include <chrono>

#include "DependencyInstaller.h"
#include "PosixProcessLauncher.h"
#include "RecordedCommands.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

DependencyInstallStep installStep(const std::string& name) {
    return {.executable = "/usr/bin/env",
            .args = {"npm", name},
            .cwd = "/repo/" + name,
            .displayCommand = "npm " + name};
}

class InstallRun : public ::testing::Test {
  protected:
    CommandResult runSteps(const std::vector<std::string>& names) {
        DependencyInstallPlan plan;
        for (const std::string& name : names) plan.steps.push_back(installStep(name));
        return run({.plan = plan, .timeoutPerStep = 900s});
    }
    CommandResult run(const DependencyInstaller::RunRequest& request) {
        return DependencyInstaller::run({.runCommand = commands.runner()}, request);
    }

    RecordedCommands commands;
};

using InstallRun_Steps = InstallRun;
using InstallRun_Output = InstallRun;
using InstallRun_Failure = InstallRun;
using InstallRun_Observer = InstallRun;

TEST_F(InstallRun_Steps, EachIsRunInOrderInItsFolderAndForItsTime) {
    commands.answer("npm", printed(""));
    runSteps({"one", "two"});
    EXPECT_THAT(commands.lines(), ElementsAre("/usr/bin/env npm one", "/usr/bin/env npm two"));
    EXPECT_EQ(commands.commands()[1].cwd, "/repo/two");
    EXPECT_EQ(commands.commands()[1].timeout, 900s);
}

TEST_F(InstallRun_Steps, PlanWithoutStepsRunsNothingAndSucceeds) {
    EXPECT_EQ(runSteps({}), (CommandResult{.terminationStatus = 0}));
    EXPECT_THAT(commands.commands(), IsEmpty());
}

TEST_F(InstallRun_Output, EachStreamOfEachStepStandsBehindItsCommand) {
    commands.answer("one", {.terminationStatus = 0, .stdout = "out 1", .stderr = "err 1"});
    commands.answer("two", {.terminationStatus = 0, .stdout = "out 2", .stderr = "err 2"});
    EXPECT_EQ(runSteps({"one", "two"}),
              (CommandResult{.terminationStatus = 0,
                             .stdout = "$ npm one\nout 1\n\n$ npm two\nout 2",
                             .stderr = "$ npm one\nerr 1\n\n$ npm two\nerr 2"}));
}

TEST_F(InstallRun_Output, SilentStepLeavesNoTrace) {
    commands.answer("npm", printed(""));
    commands.answer("two", {.terminationStatus = 0, .stderr = "err"});
    EXPECT_EQ(runSteps({"one", "two", "three"}),
              (CommandResult{.terminationStatus = 0, .stderr = "$ npm two\nerr"}));
}

TEST_F(InstallRun_Output, StreamsAreNotTrimmed) {
    commands.answer("one", printed("  out \n"));
    EXPECT_EQ(runSteps({"one"}).stdout, "$ npm one\n  out \n");
}

TEST_F(InstallRun_Failure, StatusThatIsNotZeroStopsThePlanWithThatStepsOutputOnly) {
    commands.answer("npm", printed("never"));
    commands.answer("one", {.terminationStatus = 3, .stdout = "half", .stderr = "why"});
    EXPECT_EQ(runSteps({"one", "two"}), (CommandResult{.terminationStatus = 3,
                                                       .stdout = "$ npm one\nhalf",
                                                       .stderr = "$ npm one\nwhy"}));
    EXPECT_EQ(commands.commands().size(), 1U);
}

TEST_F(InstallRun_Failure, TimeOutStopsThePlanEvenWithStatusZero) {
    commands.answer("npm", printed(""));
    commands.answer("one", {.terminationStatus = 0, .timedOut = true});
    EXPECT_EQ(runSteps({"one", "two"}), (CommandResult{.terminationStatus = 0, .timedOut = true}));
    EXPECT_EQ(commands.commands().size(), 1U);
}

TEST_F(InstallRun_Failure, LaunchErrorStopsThePlanAndIsPassedOn) {
    commands.answer("one", {.launchError = "Failed to launch command: Permission denied"});
    EXPECT_EQ(runSteps({"one", "two"}),
              (CommandResult{.terminationStatus = -1,
                             .launchError = "Failed to launch command: Permission denied"}));
    EXPECT_EQ(commands.commands().size(), 1U);
}

TEST_F(InstallRun_Failure, OutputOfTheStepsBeforeItStays) {
    commands.answer("one", printed("good"));
    commands.answer("two", failed(1, "bad"));
    EXPECT_EQ(runSteps({"one", "two", "three"}), (CommandResult{.terminationStatus = 1,
                                                                .stdout = "$ npm one\ngood",
                                                                .stderr = "$ npm two\nbad"}));
}

TEST_F(InstallRun_Observer, IsToldOfEachStepBeforeItRunsAndOfNoneBehindAFailure) {
    commands.answer("one", printed(""));
    std::vector<std::string> begun;
    DependencyInstaller::RunRequest request{
        .plan = {.steps = {installStep("one"), installStep("two"), installStep("three")}}};
    request.begins = [&](const DependencyInstallStep& step) {
        begun.push_back(step.displayCommand + " after " +
                        std::to_string(commands.commands().size()));
    };
    run(request);
    EXPECT_THAT(begun, ElementsAre("npm one after 0", "npm two after 1"));
}

TEST_F(InstallRun_Observer, GetsTheOutputOfRealStepsAsItComes) {
    PosixProcessLauncher launcher;
    const DependencyCommandRunner runner("/nonexistent", launcher);
    const DependencyTools tools{
        .runCommand = [&](const Command& command) { return runner.runCommand(command); }};
    std::string seen;
    DependencyInstaller::RunRequest request{.timeoutPerStep = 30s};
    for (const auto* word : {"first", "second"}) {
        request.plan.steps.push_back(
            {.executable = BAD_CHILD, .args = {"print", word}, .cwd = "/", .displayCommand = word});
    }
    request.begins = [&](const DependencyInstallStep& step) {
        seen += "[" + step.displayCommand + "]";
    };
    request.observer = [&](std::string_view bytes) { seen += bytes; };
    EXPECT_EQ(DependencyInstaller::run(tools, request).stdout,
              "$ first\nfirst\n\n$ second\nsecond");
    EXPECT_EQ(seen, "[first]first[second]second");
}

}  // namespace
}  // namespace tarnbeck::testing
