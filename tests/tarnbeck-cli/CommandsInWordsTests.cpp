#include "CommandsInWords.h"

namespace tarnbeck::cli {
namespace {

using ::testing::ElementsAre;

constexpr auto repoPath = "/home/you/app";

TEST(CommandsInWords, NameTheToolAndTheProject) {
    EXPECT_EQ(commandInWords({.executable = "/usr/bin/env",
                              .args = {"npm", "outdated", "--json"},
                              .cwd = "/home/you/app/web"},
                             repoPath),
              "npm in web");
    EXPECT_EQ(commandInWords({.executable = "/home/you/app/api/.venv/bin/python3",
                              .args = {"-m", "pip", "list"},
                              .cwd = "/home/you/app/api"},
                             repoPath),
              "python3 in api");
}

TEST(CommandsInWords, LeaveTheRepositorysOwnProjectOut) {
    EXPECT_EQ(
        commandInWords({.executable = "/usr/bin/env", .args = {"npx"}, .cwd = repoPath}, repoPath),
        "npx");
}

TEST(CommandsInWords, NameTheMemberOfAWorkspaceThatIsAskedAboutInTheRoot) {
    EXPECT_EQ(commandInWords({.executable = "/usr/bin/env",
                              .args = {"pnpm", "outdated", "--filter", "./packages/ui..."},
                              .cwd = repoPath},
                             repoPath),
              "pnpm in packages/ui");
}

TEST(CommandsInWords, OddCommandsAreNoProblem) {
    EXPECT_EQ(commandInWords({.executable = "/usr/bin/env", .cwd = "/"}, repoPath), "env in /");
    EXPECT_EQ(commandInWords({.executable = "", .args = {"--filter"}, .cwd = repoPath}, repoPath),
              "");
}

TEST(CommandsInWords, AreToldBeforeEachCommandRuns) {
    std::vector<std::string> events;
    DependencyTools tools;
    tools.runCommand = [&](const Command& command) {
        events.push_back("ran " + command.executable);
        return CommandResult{.terminationStatus = 7};
    };
    const auto telling = tellingCommands(
        tools, [&](const Command& command) { events.push_back("begins " + command.executable); });
    EXPECT_EQ(telling.runCommand({.executable = "/bin/a"}).terminationStatus, 7);
    EXPECT_THAT(events, ElementsAre("begins /bin/a", "ran /bin/a"));
}

}  // namespace
}  // namespace tarnbeck::cli
