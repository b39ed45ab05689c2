#include <csignal>
#include <filesystem>
#include <fstream>

#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

namespace fs = std::filesystem;

class LogEndToEnd : public ::testing::Test {
  protected:
    ProgramCall log(std::vector<std::string> flags = {}) const {
        ProgramCall call{.arguments = {"log"}, .home = folder.path()};
        call.arguments.insert(call.arguments.end(), flags.begin(), flags.end());
        return call;
    }
    void append(const std::string& text) const { std::ofstream(path, std::ios::app) << text; }

    TemporaryFolder folder;
    std::string path = folder.makeFolder(".config/tarnbeck") + "/scan.log";
};

TEST_F(LogEndToEnd, PrintsBothGenerationsInOrder) {
    folder.write(".config/tarnbeck/scan.log.1", "one\n");
    append("two\n");
    const auto result = run(log());
    EXPECT_EQ(result.output, "one\ntwo\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST_F(LogEndToEnd, PrintsTheLastLinesThatAreAskedForAcrossTheGenerations) {
    folder.write(".config/tarnbeck/scan.log.1", "one\ntwo\n");
    append("three\n");
    EXPECT_EQ(run(log({"-n", "2"})).output, "two\nthree\n");
}

TEST_F(LogEndToEnd, WithoutALogSaysSoAndGivesZero) {
    const auto result = run(log());
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "tarnbeck-cli: there is no log yet at " + path + "\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(LogEndToEnd, LogThatCantBeReadGivesOneAndSaysWhy) {
    append("one\n");
    fs::permissions(path, fs::perms::none);
    ProgramCall call = log();
    call.withoutPrivileges = true;
    const auto result = run(call);
    EXPECT_EQ(result.errors, "tarnbeck-cli: " + path + ": Permission denied\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(LogEndToEnd, IsHarmlessOnATerminalAndUntouchedElsewhere) {
    append("a\033[31mb\n");
    ProgramCall call = log();
    EXPECT_EQ(run(call).output, "a\033[31mb\n");
    call.output = ProgramCall::Output::terminal;
    EXPECT_EQ(run(call).output, "a\uFFFD[31mb\r\n");
}

TEST_F(LogEndToEnd, FollowingBeginsWithTheLastTenLines) {
    for (int number = 1; number <= 12; ++number) append(std::to_string(number) + "\n");
    RunningProgram program(log({"-f"}));
    for (int number = 3; number <= 12; ++number) {
        EXPECT_EQ(program.readLine(), std::to_string(number));
    }
}

TEST_F(LogEndToEnd, FollowingBeginsWithAsManyLinesAsAreAskedFor) {
    append("one\ntwo\n");
    RunningProgram program(log({"-f", "-n", "1"}));
    EXPECT_EQ(program.readLine(), "two");
}

TEST_F(LogEndToEnd, FollowingPrintsWhatComes) {
    append("one\n");
    RunningProgram program(log({"-f"}));
    EXPECT_EQ(program.readLine(), "one");
    append("two\n");
    EXPECT_EQ(program.readLine(), "two");
    append("three\n");
    EXPECT_EQ(program.readLine(), "three");
}

TEST_F(LogEndToEnd, FollowingGoesOnAcrossARotation) {
    append("one\n");
    RunningProgram program(log({"-f"}));
    EXPECT_EQ(program.readLine(), "one");
    append("two\n");
    fs::rename(path, path + ".1");
    append("three\n");
    EXPECT_EQ(program.readLine(), "two");
    EXPECT_EQ(program.readLine(), "three");
    append("four\n");
    EXPECT_EQ(program.readLine(), "four");
}

TEST_F(LogEndToEnd, FollowingWaitsForTheFirstLog) {
    ProgramCall call = log({"-f"});
    call.output = ProgramCall::Output::terminal;
    call.errors = ProgramCall::Errors::terminal;
    RunningProgram program(call);
    EXPECT_TRUE(program.readUntil("there is no log yet"));
    append("one\n");
    EXPECT_TRUE(program.readUntil("one\r\n"));
}

TEST_F(LogEndToEnd, FollowingEndsWithCtrlC) {
    append("one\n");
    ProgramCall call = log({"-f"});
    call.output = ProgramCall::Output::terminal;
    RunningProgram program(call);
    EXPECT_TRUE(program.readUntil("one"));
    program.type('\x03');
    EXPECT_EQ(program.wait().signal, SIGINT);
}

TEST_F(LogEndToEnd, FollowingEndsWithItsReaderAlthoughNothingComes) {
    append("one\n");
    RunningProgram program(log({"-f"}));
    EXPECT_EQ(program.readLine(), "one");
    program.closeOutput();
    const auto result = program.wait();
    EXPECT_EQ(result.signal, SIGPIPE);
    EXPECT_EQ(result.errors, "");
}

TEST_F(LogEndToEnd, FollowingEndsWithTheFolder) {
    append("one\n");
    RunningProgram program(log({"-f"}));
    EXPECT_EQ(program.readLine(), "one");
    fs::rename(folder / ".config/tarnbeck", folder / "elsewhere");
    const auto result = program.wait();
    EXPECT_EQ(result.errors, "tarnbeck-cli: the folder of the log has gone\n");
    EXPECT_EQ(result.status, 1);
}

}  // namespace
}  // namespace tarnbeck::testing
