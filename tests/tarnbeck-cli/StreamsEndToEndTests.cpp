#include <csignal>
#include <sstream>

#include "GitFixture.h"
#include "Program.h"
#include "TemporaryFolder.h"
#include "Text.h"

namespace tarnbeck::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using Output = ProgramCall::Output;
using Errors = ProgramCall::Errors;

class StreamsEndToEnd : public ::testing::Test {
  protected:
    StreamsEndToEnd() {
        repository = makeRepository(folder / "alpha");
        folder.write("alpha/file.txt", "other\n");
    }
    ProgramCall status(std::vector<std::string> flags = {}) const {
        ProgramCall call{.arguments = {"status", repository}, .home = folder.path()};
        call.arguments.insert(call.arguments.end(), flags.begin(), flags.end());
        return call;
    }

    TemporaryFolder folder;
    std::string repository;
};

TEST_F(StreamsEndToEnd, PipeGetsNoColor) {
    EXPECT_THAT(run(status()).output, Not(HasSubstr("\033")));
}

TEST_F(StreamsEndToEnd, PipeGetsColorWhenAsked) {
    EXPECT_THAT(run(status({"--color", "always"})).output, HasSubstr("\033[31m✎\033[0m alpha"));
}

TEST_F(StreamsEndToEnd, TerminalGetsColor) {
    ProgramCall call = status();
    call.output = Output::terminal;
    EXPECT_THAT(run(call).output, HasSubstr("\033[31m✎\033[0m alpha"));
}

TEST_F(StreamsEndToEnd, TerminalGetsNoColorWithNoColorSet) {
    ProgramCall call = status();
    call.output = Output::terminal;
    call.environment = {"NO_COLOR=1"};
    EXPECT_THAT(run(call).output, Not(HasSubstr("\033[31m")));
}

TEST_F(StreamsEndToEnd, EmptyNoColorCountsAsNotSet) {
    ProgramCall call = status();
    call.output = Output::terminal;
    call.environment = {"NO_COLOR="};
    EXPECT_THAT(run(call).output, HasSubstr("\033[31m✎"));
}

TEST_F(StreamsEndToEnd, FlagOutweighsNoColor) {
    ProgramCall call = status({"--color=always"});
    call.environment = {"NO_COLOR=1"};
    EXPECT_THAT(run(call).output, HasSubstr("\033[31m✎"));
}

TEST_F(StreamsEndToEnd, TerminalGetsNoColorWhenForbidden) {
    ProgramCall call = status({"--color=never"});
    call.output = Output::terminal;
    EXPECT_THAT(run(call).output, Not(HasSubstr("\033[31m")));
}

TEST_F(StreamsEndToEnd, JsonIsNeverColored) {
    EXPECT_THAT(run(status({"--json", "--color=always"})).output, Not(HasSubstr("\033")));
}

TEST_F(StreamsEndToEnd, TableFitsTheTerminal) {
    makeRepository(folder / std::string(90, 'n'));
    ProgramCall call = status({folder / std::string(90, 'n')});
    call.output = Output::terminal;
    call.columns = 40;
    std::istringstream lines(withoutTerminalCodes(run(call).output));
    for (std::string line; std::getline(lines, line);) EXPECT_LE(displayWidth(line), 40U) << line;
}

TEST_F(StreamsEndToEnd, ProgressShowsOnATerminalsStandardErrorAndGoes) {
    ProgramCall call = status();
    call.errors = Errors::terminal;
    const auto result = run(call);
    EXPECT_THAT(result.errors, HasSubstr("Scanning 1/1 alpha"));
    EXPECT_THAT(result.errors, ::testing::EndsWith("\r\033[K"));
    EXPECT_THAT(result.output, Not(HasSubstr("Scanning")));
}

TEST_F(StreamsEndToEnd, NoProgressElsewhere) {
    ProgramCall call = status();
    call.output = Output::terminal;
    const auto result = run(call);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, Not(HasSubstr("Scanning")));
}

TEST_F(StreamsEndToEnd, ReaderThatLeftEndsItQuietly) {
    RunningProgram program(status({"--json"}));
    program.closeOutput();
    const auto result = program.wait();
    EXPECT_EQ(result.signal, SIGPIPE);
    EXPECT_EQ(result.errors, "");
}

TEST_F(StreamsEndToEnd, FullDiskIsNamedAndGivesOne) {
    ProgramCall call = status();
    call.output = Output::fullDisk;
    const auto result = run(call);
    EXPECT_EQ(result.errors, "tarnbeck-cli: can't write: No space left on device\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(StreamsEndToEnd, ClosedStreamsAreNotTakenByItsOwnFiles) {
    ProgramCall call = status();
    call.output = Output::closed;
    const auto result = run(call);
    EXPECT_EQ(result.errors, "tarnbeck-cli: can't write: Bad file descriptor\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(StreamsEndToEnd, ComplaintsStandBetweenTheTableAndTheCounts) {
    ProgramCall call = status({folder / "missing"});
    call.output = Output::terminal;
    call.errors = Errors::terminal;
    const std::string text = withoutTerminalCodes(run(call).output);
    EXPECT_LT(text.find("✎ alpha"), text.find("missing: does not exist"));
    EXPECT_LT(text.find("missing: does not exist"), text.find("1 repository ·"));
}

}  // namespace
}  // namespace tarnbeck::testing
