// What a child of each of the two runners can see of how it was started.
#include <csignal>
#include <sstream>

#include <fcntl.h>

#include "DependencyCommandRunner.h"
#include "GitCommand.h"
#include "ObservedLog.h"
#include "PosixProcessLauncher.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// The values of all lines "key=value", in their order.
std::vector<std::string> valuesOf(const std::string& key, const std::string& description) {
    std::vector<std::string> values;
    std::istringstream lines(description);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(key + "=")) values.push_back(line.substr(key.size() + 1));
    }
    return values;
}

class ChildEnvironment : public ::testing::Test {
  protected:
    std::string describedByGit(std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(), "describe");
        const GitCommand git({.home = "/home/somebody", .executable = BAD_CHILD}, launcher_,
                             log_.log);
        return git.run({.executableArgs = arguments, .logRepoPath = "/repo"}).value_or("");
    }

    std::string describedByTool(std::vector<std::string> arguments = {},
                                const std::string& cwd = "/") {
        arguments.insert(arguments.begin(), "describe");
        const DependencyCommandRunner runner("/home/somebody", launcher_);
        return runner
            .runCommand({.executable = BAD_CHILD, .args = arguments, .cwd = cwd, .timeout = 15s})
            .stdout;
    }

    std::vector<std::string> bothDescriptions() { return {describedByGit(), describedByTool()}; }

    testing::Simulation simulation_;
    testing::ObservedLog log_{simulation_};
    PosixProcessLauncher launcher_;
};

using GitCommand_Child = ChildEnvironment;
using RunCommand_Child = ChildEnvironment;
using BothRunners_Child = ChildEnvironment;

TEST_F(GitCommand_Child, GetsExactlyItsFiveVariablesWithTheSystemsToolsFirst) {
    EXPECT_THAT(valuesOf("environment", describedByGit()),
                ElementsAre("HOME=/home/somebody", "GIT_TERMINAL_PROMPT=0", "GIT_OPTIONAL_LOCKS=0",
                            "LC_ALL=C",
                            "PATH=/usr/bin:/bin:/usr/sbin:/sbin:/usr/local/bin:/opt/homebrew/bin"));
}

TEST_F(RunCommand_Child, GetsExactlyItsFiveVariablesWithTheUsersToolsFirst) {
    EXPECT_THAT(valuesOf("environment", describedByTool()),
                ElementsAre("HOME=/home/somebody",
                            "PATH=/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin",
                            "LC_ALL=C", "CI=true", "COREPACK_ENABLE_NETWORK=0"));
}

TEST_F(RunCommand_Child, GetsExactlyTheVariablesThatItsRunnerWasGiven) {
    const DependencyCommandRunner runner({"HOME=/home/somebody", "OTHER=1"}, launcher_);
    const auto result =
        runner.runCommand({.executable = BAD_CHILD, .args = {"describe"}, .timeout = 15s});
    EXPECT_THAT(valuesOf("environment", result.stdout),
                ElementsAre("HOME=/home/somebody", "OTHER=1"));
}

TEST_F(GitCommand_Child, RunsTheSystemsGitUnlessToldOtherwise) {
    EXPECT_EQ(GitCommand::Options{}.executable, "/usr/bin/git");
}

TEST_F(GitCommand_Child, RunsInTheRootFolder) {
    EXPECT_THAT(valuesOf("directory", describedByGit()), ElementsAre("/"));
}

TEST_F(RunCommand_Child, RunsInTheGivenFolder) {
    const std::string folder = log_.folder.makeFolder("a folder");
    EXPECT_THAT(valuesOf("directory", describedByTool({}, folder)), ElementsAre(folder));
}

TEST_F(RunCommand_Child, RunsInTheRootFolderWhereNoneIsGiven) {
    EXPECT_EQ(Command{}.cwd, "/");
}

TEST_F(BothRunners_Child, GetsItsArgumentsAsTheyStandWithoutAShell) {
    const std::vector<std::string> arguments = {"",  "two words", "$HOME",    "*",
                                                "~", "'\"\\",     "; exit 1", "--"};
    for (const std::string& text : {describedByGit(arguments), describedByTool(arguments)}) {
        EXPECT_EQ(valuesOf("argument", text), arguments);
    }
}

TEST_F(BothRunners_Child, ReadsTheEndOfItsInputAtOnce) {
    for (const std::string& text : bothDescriptions()) {
        EXPECT_THAT(valuesOf("input at its end", text), ElementsAre("1"));
    }
}

TEST_F(BothRunners_Child, LeadsASessionOfItsOwn) {
    for (const std::string& text : bothDescriptions()) {
        EXPECT_THAT(valuesOf("leads its session", text), ElementsAre("1"));
    }
}

TEST_F(BothRunners_Child, HasNoBlockedSignalWhateverIsBlockedHere) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
    const auto descriptions = bothDescriptions();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    for (const std::string& text : descriptions) {
        EXPECT_THAT(text, HasSubstr("leads its session=1"));
        EXPECT_THAT(valuesOf("blocked signal", text), IsEmpty());
    }
}

TEST_F(BothRunners_Child, IgnoresNoSignalWhateverIsIgnoredHere) {
    const std::vector<int> signals = {SIGPIPE, SIGINT, SIGTERM, SIGHUP, SIGUSR1};
    for (const int signal : signals) std::signal(signal, SIG_IGN);
    const auto descriptions = bothDescriptions();
    for (const int signal : signals) std::signal(signal, SIG_DFL);
    for (const std::string& text : descriptions) {
        EXPECT_THAT(text, HasSubstr("leads its session=1"));
        EXPECT_THAT(valuesOf("ignored signal", text), IsEmpty());
    }
}

TEST_F(BothRunners_Child, InheritsNoDescriptorEvenOneThatIsNotCloseOnExec) {
    const FileDescriptor careless(open("/dev/null", O_RDONLY));  // inheritable on purpose
    for (const std::string& text : bothDescriptions()) {
        EXPECT_THAT(text, HasSubstr("leads its session=1"));
        EXPECT_THAT(valuesOf("inherited descriptor", text), IsEmpty());
    }
}

}  // namespace
}  // namespace tarnbeck
