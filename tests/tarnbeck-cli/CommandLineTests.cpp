#include "CommandLine.h"

namespace tarnbeck::cli {
namespace {

using Words = std::vector<std::string>;

template <class CommandArguments>
CommandArguments parsed(Words words) {
    const auto result = parsedCommandLine(std::move(words));
    if (const auto* status = std::get_if<int>(&result)) {
        throw std::runtime_error("answered with exit status " + std::to_string(*status));
    }
    return std::get<CommandArguments>(std::get<Arguments>(result));
}

// The exit status of a call that needs nothing done; -1 when something is to be done. Keeps what
// was printed off the test's own streams.
struct Answer {
    int status = -1;
    std::string output;
    std::string errors;
};
Answer answerTo(Words words) {
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    const auto result = parsedCommandLine(std::move(words));
    Answer answer;
    answer.output = ::testing::internal::GetCapturedStdout();
    answer.errors = ::testing::internal::GetCapturedStderr();
    if (const auto* status = std::get_if<int>(&result)) answer.status = *status;
    return answer;
}

TEST(CommandLine_Default, NoWordAtAllMeansStatusOfTheConfiguredRepositories) {
    EXPECT_TRUE(parsed<StatusArguments>({}).paths.empty());
}

TEST(CommandLine_Default, PathAloneMeansStatusOfIt) {
    EXPECT_EQ(parsed<StatusArguments>({"/x", "y"}).paths, Words({"/x", "y"}));
}

TEST(CommandLine_Default, FlagAloneMeansStatusWithIt) {
    EXPECT_TRUE(parsed<StatusArguments>({"--json"}).json);
}

TEST(CommandLine_Default, CommandNamesAreNotPathsInFirstPlace) {
    EXPECT_NO_THROW(parsed<ConfigArguments>({"config"}));
}

TEST(CommandLine_Default, CommandNamesArePathsBehindStatus) {
    EXPECT_EQ(parsed<StatusArguments>({"status", "config", "status", "help"}).paths,
              Words({"config", "status", "help"}));
}

TEST(CommandLine_Issues, FlagsAreOffUnlessNamed) {
    const auto arguments = parsed<IssuesArguments>({"issues", "/x"});
    EXPECT_EQ(arguments.paths, Words({"/x"}));
    EXPECT_FALSE(arguments.json);
    EXPECT_FALSE(arguments.refresh);
}

TEST(CommandLine_Issues, FlagsAreReadWithOrWithoutPaths) {
    const auto arguments = parsed<IssuesArguments>({"issues", "--json", "--refresh"});
    EXPECT_TRUE(arguments.json);
    EXPECT_TRUE(arguments.refresh);
    EXPECT_TRUE(arguments.paths.empty());
}

TEST(CommandLine_Deps, FlagsAreOffUnlessNamed) {
    const auto arguments = parsed<DepsArguments>({"deps", "/x"});
    EXPECT_EQ(arguments.paths, Words({"/x"}));
    EXPECT_FALSE(arguments.json);
    EXPECT_FALSE(arguments.refresh);
    EXPECT_EQ(arguments.color, ColorChoice::automatic);
}

TEST(CommandLine_Deps, FlagsAreReadWithOrWithoutPaths) {
    const auto arguments =
        parsed<DepsArguments>({"deps", "--json", "--refresh", "--color", "never"});
    EXPECT_TRUE(arguments.json);
    EXPECT_TRUE(arguments.refresh);
    EXPECT_EQ(arguments.color, ColorChoice::never);
    EXPECT_TRUE(arguments.paths.empty());
}

TEST(CommandLine_Install, TakesAPathAndPerhapsAProject) {
    const auto arguments = parsed<InstallArguments>({"install", "a"});
    EXPECT_EQ(arguments.path, "a");
    EXPECT_EQ(arguments.project, std::nullopt);
    EXPECT_FALSE(arguments.yes);
    EXPECT_EQ(parsed<InstallArguments>({"install", "a", "web"}).project, "web");
    EXPECT_TRUE(parsed<InstallArguments>({"install", "-y", "a"}).yes);
    EXPECT_TRUE(parsed<InstallArguments>({"install", "a", "web", "--yes"}).yes);
}

TEST(CommandLine_Install, AnyOtherNumberOfWordsIsWrongUsage) {
    EXPECT_EQ(answerTo({"install"}).status, 2);
    EXPECT_EQ(answerTo({"install", "a", "b", "c"}).status, 2);
    EXPECT_EQ(answerTo({"install", ""}).status, 2);
    EXPECT_EQ(answerTo({"install", "a", ""}).status, 2);
    EXPECT_EQ(answerTo({"install", "a", "--json"}).status, 2);
}

TEST(CommandLine_Sync, TakesOnePath) {
    EXPECT_EQ(parsed<SyncArguments>({"sync", "/x"}).path, "/x");
    EXPECT_EQ(answerTo({"sync", "/x", "/y"}).status, 2);
    EXPECT_EQ(answerTo({"sync"}).status, 2);
}

TEST(CommandLine_Status, FlagsAreOffUnlessNamed) {
    const auto arguments = parsed<StatusArguments>({"status"});
    EXPECT_FALSE(arguments.json);
    EXPECT_FALSE(arguments.fetch);
    EXPECT_EQ(arguments.color, ColorChoice::automatic);
}

TEST(CommandLine_Status, AllFlagsMayStandBetweenPaths) {
    const auto arguments =
        parsed<StatusArguments>({"status", "a", "--json", "b", "--fetch", "--color", "never", "c"});
    EXPECT_TRUE(arguments.json);
    EXPECT_TRUE(arguments.fetch);
    EXPECT_EQ(arguments.color, ColorChoice::never);
    EXPECT_EQ(arguments.paths, Words({"a", "b", "c"}));
}

TEST(CommandLine_Color, TakesItsThreeWords) {
    EXPECT_EQ(parsed<StatusArguments>({"--color=auto"}).color, ColorChoice::automatic);
    EXPECT_EQ(parsed<StatusArguments>({"--color=always"}).color, ColorChoice::always);
    EXPECT_EQ(parsed<StatusArguments>({"--color=never"}).color, ColorChoice::never);
}

TEST(CommandLine_Color, LastOneWins) {
    EXPECT_EQ(parsed<StatusArguments>({"--color=always", "--color=never"}).color,
              ColorChoice::never);
}

TEST(CommandLine_Color, AnotherWordIsWrongUsageAndTheThreeAreNamed) {
    const Answer answer = answerTo({"status", "--color", "red"});
    EXPECT_EQ(answer.status, 2);
    EXPECT_THAT(answer.errors, ::testing::HasSubstr("auto, always or never, not \"red\""));
}

TEST(CommandLine_Color, NumbersOfTheChoicesAreNoWords) {
    EXPECT_EQ(answerTo({"status", "--color", "1"}).status, 2);
}

TEST(CommandLine_Watch, TakesJsonAndColor) {
    const auto arguments = parsed<WatchArguments>({"watch", "--json", "--color", "always"});
    EXPECT_TRUE(arguments.json);
    EXPECT_EQ(arguments.color, ColorChoice::always);
    EXPECT_FALSE(parsed<WatchArguments>({"watch"}).json);
}

TEST(CommandLine_Watch, PathIsWrongUsage) {
    EXPECT_EQ(answerTo({"watch", "/x"}).status, 2);
}

TEST(CommandLine_Discover, TakesFoldersAndJson) {
    const auto arguments = parsed<DiscoverArguments>({"discover", "a", "--json", "b"});
    EXPECT_EQ(arguments.directories, Words({"a", "b"}));
    EXPECT_TRUE(arguments.json);
    EXPECT_TRUE(parsed<DiscoverArguments>({"discover"}).directories.empty());
}

TEST(CommandLine_Add, TakesPaths) {
    EXPECT_EQ(parsed<AddArguments>({"add", "a", "b"}).paths, Words({"a", "b"}));
}

TEST(CommandLine_Add, WithoutPathIsWrongUsage) {
    EXPECT_EQ(answerTo({"add"}).status, 2);
}

TEST(CommandLine_Remove, TakesPaths) {
    EXPECT_EQ(parsed<RemoveArguments>({"remove", "a", "b"}).paths, Words({"a", "b"}));
}

TEST(CommandLine_Remove, WithoutPathIsWrongUsage) {
    EXPECT_EQ(answerTo({"remove"}).status, 2);
}

TEST(CommandLine_Config, TakesJson) {
    EXPECT_TRUE(parsed<ConfigArguments>({"config", "--json"}).json);
    EXPECT_FALSE(parsed<ConfigArguments>({"config"}).json);
}

TEST(CommandLine_Config, PathIsWrongUsage) {
    EXPECT_EQ(answerTo({"config", "x"}).status, 2);
}

TEST(CommandLine_Discard, TakesARepositoryAndAFile) {
    const auto arguments = parsed<DiscardArguments>({"discard", "a", "b"});
    EXPECT_EQ(arguments.path, "a");
    EXPECT_EQ(arguments.file, "b");
    EXPECT_FALSE(arguments.yes);
    EXPECT_TRUE(parsed<DiscardArguments>({"discard", "-y", "a", "b"}).yes);
    EXPECT_TRUE(parsed<DiscardArguments>({"discard", "a", "b", "--yes"}).yes);
}

TEST(CommandLine_Discard, AnythingButTwoIsWrongUsage) {
    EXPECT_EQ(answerTo({"discard"}).status, 2);
    EXPECT_EQ(answerTo({"discard", "a"}).status, 2);
    EXPECT_EQ(answerTo({"discard", "a", "b", "c"}).status, 2);
    EXPECT_EQ(answerTo({"discard", "a", ""}).status, 2);
}

TEST(CommandLine_Log, TakesItsTwoFlags) {
    EXPECT_FALSE(parsed<LogArguments>({"log"}).follow);
    EXPECT_EQ(parsed<LogArguments>({"log"}).lines, std::nullopt);
    EXPECT_TRUE(parsed<LogArguments>({"log", "-f"}).follow);
    EXPECT_TRUE(parsed<LogArguments>({"log", "--follow"}).follow);
    EXPECT_EQ(parsed<LogArguments>({"log", "-n", "5"}).lines, 5U);
    EXPECT_EQ(parsed<LogArguments>({"log", "-n0"}).lines, 0U);
    EXPECT_EQ(parsed<LogArguments>({"log", "--lines=7", "-f"}).lines, 7U);
}

TEST(CommandLine_Log, WhatIsNoNumberOfLinesIsWrongUsage) {
    for (const char* word : {"-1", "x", "5x", "", "1.5", "99999999999999999999999"}) {
        EXPECT_EQ(answerTo({"log", "-n", word}).status, 2) << word;
    }
    EXPECT_EQ(answerTo({"log", "-n"}).status, 2);
    EXPECT_EQ(answerTo({"log", "x"}).status, 2);
}

TEST(CommandLine_Doctor, TakesJson) {
    EXPECT_TRUE(parsed<DoctorArguments>({"doctor", "--json"}).json);
    EXPECT_FALSE(parsed<DoctorArguments>({"doctor"}).json);
}

TEST(CommandLine_Doctor, PathIsWrongUsage) {
    EXPECT_EQ(answerTo({"doctor", "x"}).status, 2);
}

TEST(CommandLine_Usage, UnknownFlagIsWrongAndNamedOnStandardErrorOnly) {
    const Answer answer = answerTo({"--nope"});
    EXPECT_EQ(answer.status, 2);
    EXPECT_EQ(answer.output, "");
    EXPECT_THAT(answer.errors, ::testing::StartsWith("tarnbeck-cli: "));
    EXPECT_THAT(answer.errors, ::testing::HasSubstr("--nope"));
}

TEST(CommandLine_Usage, FlagOfAnotherCommandIsWrong) {
    EXPECT_EQ(answerTo({"discover", "--fetch"}).status, 2);
}

TEST(CommandLine_Usage, EmptyTextIsNoPath) {
    EXPECT_EQ(answerTo({"status", ""}).status, 2);
}

const Words everyCommand = {"status", "watch",  "issues", "deps",    "install", "sync",  "discover",
                            "add",    "remove", "config", "discard", "log",     "doctor"};

TEST(CommandLine_Help, OfTheProgramNamesEachCommandAndGivesZero) {
    const Answer answer = answerTo({"--help"});
    EXPECT_EQ(answer.status, 0);
    for (const std::string& command : everyCommand) {
        EXPECT_THAT(answer.output, ::testing::HasSubstr("  " + command + " "));
    }
}

TEST(CommandLine_Help, OfEachCommandGivesZero) {
    for (const std::string& command : everyCommand) {
        const Answer answer = answerTo({command, "--help"});
        EXPECT_EQ(answer.status, 0) << command;
        EXPECT_THAT(answer.output, ::testing::HasSubstr("tarnbeck-cli " + command));
    }
}

TEST(CommandLine_Help, WordHelpAloneMeansTheProgramsHelp) {
    EXPECT_EQ(answerTo({"help"}).output, answerTo({"--help"}).output);
}

TEST(CommandLine_Help, WordHelpBeforeACommandMeansItsHelp) {
    EXPECT_EQ(answerTo({"help", "add"}).output, answerTo({"add", "--help"}).output);
}

TEST(CommandLine_Help, NoLineIsWiderThanATerminal) {
    for (const std::string& command : everyCommand) {
        const Answer answer = answerTo({command, "--help"});
        std::istringstream lines(answer.output);
        for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100U) << line;
    }
}

TEST(CommandLine_Help, VersionGivesZero) {
    const Answer answer = answerTo({"--version"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, ::testing::StartsWith("tarnbeck-cli 0."));
}

TEST(CommandLine_Paths, BehindTwoDashesLeadingDashIsNoFlag) {
    EXPECT_EQ(parsed<StatusArguments>({"--", "-x"}).paths, Words({"./-x"}));
    EXPECT_EQ(parsed<AddArguments>({"add", "a", "--", "-x", "--json"}).paths,
              Words({"a", "./-x", "./--json"}));
}

TEST(CommandLine_Paths, BehindTwoDashesCommandNamesArePaths) {
    EXPECT_EQ(parsed<StatusArguments>({"--", "config"}).paths, Words({"config"}));
}

TEST(CommandLine_Paths, BracketsAndBracesAreNoLists) {
    EXPECT_EQ(parsed<StatusArguments>({"[a,b]", "{}", "++", "%%"}).paths,
              Words({"./[a,b]", "./{}", "./++", "%%"}));
}

TEST(CommandLine_Paths, CommasBlanksAndEqualSignsStay) {
    EXPECT_EQ(parsed<StatusArguments>({"a,b", "c d", "e=f", "+g"}).paths,
              Words({"a,b", "c d", "e=f", "+g"}));
}

}  // namespace
}  // namespace tarnbeck::cli
