#include <filesystem>
#include <fstream>

#include <sys/stat.h>

#include "GitFixture.h"
#include "PlayedTools.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
namespace fs = std::filesystem;

// uv, which installs, is played.
class InstallEndToEnd : public ::testing::Test {
  protected:
    InstallEndToEnd() {
        folder.write("weather/requirements.txt", "");
        python = writeEnvironment(folder, "weather", "[]");
        uv = writeUv(folder, "echo \"$PWD $*\" >> '" + (folder / "installed") +
                                 "'\necho installing\necho warning >&2\n");
    }

    ProgramCall install(std::vector<std::string> words) const {
        ProgramCall call{.arguments = {"install"}, .home = folder.path(), .folder = repository};
        call.arguments.insert(call.arguments.end(), words.begin(), words.end());
        return call;
    }
    ProgramCall onTerminal(std::vector<std::string> words) const {
        ProgramCall call = install(std::move(words));
        call.output = ProgramCall::Output::terminal;
        call.errors = ProgramCall::Errors::terminal;
        call.input = ProgramCall::Input::terminal;
        call.columns = 250;
        return call;
    }
    ProgramResult answered(std::vector<std::string> words, const std::string& answer) {
        RunningProgram program(onTerminal(std::move(words)));
        EXPECT_TRUE(program.readUntil("[y/N] "));
        for (const char character : answer) program.type(character);
        ProgramResult result = program.wait();
        result.output = withoutTerminalCodes(result.output);
        return result;
    }
    std::string command(const std::string& file = "requirements.txt") const {
        return uv + " pip install --python " + python + " -r " + file;
    }
    bool somethingWasInstalled() const { return fs::exists(folder / "installed"); }

    TemporaryFolder folder;
    std::string repository = makeRepository(folder / "weather");
    std::string python;
    std::string uv;
};

TEST_F(InstallEndToEnd, ShowsThePlanRunsItAndTellsTheOutcome) {
    const auto result = run(install({repository, "--yes"}));
    EXPECT_EQ(result.output, "Synced Python dependencies in " + repository + "\n");
    EXPECT_THAT(result.errors, StartsWith("Sync Python dependencies\n  in " + repository +
                                          ":\n    $ " + command() + "\n$ " + command() + "\n"));
    EXPECT_THAT(result.errors, HasSubstr("\ninstalling\n"));
    EXPECT_THAT(result.errors, HasSubstr("\nwarning\n"));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(contentOf(folder / "installed"),
              repository + " pip install --python " + python + " -r requirements.txt\n");
}

TEST_F(InstallEndToEnd, AsksFirstAndYesDoesIt) {
    const auto result = answered({repository}, "y\n");
    EXPECT_THAT(result.output, HasSubstr("    $ " + command() + "\nRun this? [y/N] "));
    EXPECT_THAT(result.output, HasSubstr("\nSynced Python dependencies in " + repository + "\n"));
    EXPECT_EQ(result.status, 0);
}

class InstallEndToEnd_Refused : public InstallEndToEnd,
                                public ::testing::WithParamInterface<const char*> {};

TEST_P(InstallEndToEnd_Refused, AnyOtherAnswerInstallsNothing) {
    const auto result = answered({repository}, GetParam());
    EXPECT_THAT(result.output, HasSubstr("tarnbeck-cli: nothing was installed\n"));
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(somethingWasInstalled());
}

INSTANTIATE_TEST_SUITE_P(Answers, InstallEndToEnd_Refused,
                         ::testing::Values("n\n", "\n", "\x04", "yellow\n"));

TEST_F(InstallEndToEnd, WithoutATerminalToAskOnShowsThePlanAndInstallsNothing) {
    const auto result = run(install({repository}));
    EXPECT_THAT(result.errors, HasSubstr("    $ " + command() + "\n"));
    EXPECT_THAT(result.errors, EndsWith("tarnbeck-cli: standard input is no terminal to ask on: "
                                        "--yes installs without asking\n"));
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(somethingWasInstalled());
}

TEST_F(InstallEndToEnd, ForgetsWhatIsRememberedOfTheRepositoryBeforeItRuns) {
    run({.arguments = {"deps", repository}, .home = folder.path()});
    const std::string cache = folder / ".config/tarnbeck/dependency-cache.json";
    EXPECT_THAT(contentOf(cache), HasSubstr(repository));
    writeUv(folder, "exit 1\n");
    run(install({repository, "--yes"}));
    EXPECT_THAT(contentOf(cache), Not(HasSubstr(repository)));
}

TEST_F(InstallEndToEnd, RefusedOneKeepsWhatIsRemembered) {
    run(install({repository}));
    EXPECT_THAT(contentOf(folder / ".config/tarnbeck/dependency-cache.json"),
                HasSubstr(repository));
}

TEST_F(InstallEndToEnd, StepThatFailsIsNamedAndThoseBehindItDoNotRun) {
    folder.write("weather/requirements-dev.txt", "");
    writeUv(folder, "echo \"$*\" >> '" + (folder / "installed") + "'\nprintf 'no luck'\nexit 3\n");
    const auto result = run(install({repository, "-y"}));
    EXPECT_THAT(result.errors,
                HasSubstr("$ " + command() + "\nno luck\ntarnbeck-cli: " + repository +
                          " (.): " + command() + " failed (exit status 3)\n"));
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(contentOf(folder / "installed"), Not(HasSubstr("requirements-dev.txt")));
}

TEST_F(InstallEndToEnd, OutputIsPassedOnAsItComes) {
    const std::string pipe = folder / "pipe";
    mkfifo(pipe.c_str(), 0600);
    writeUv(folder, "echo begun\nread line < '" + pipe + "'\necho \"$line\"\n");
    RunningProgram program(onTerminal({repository, "--yes"}));
    EXPECT_TRUE(program.readUntil("begun"));
    std::ofstream(pipe) << "go on\n";
    EXPECT_THAT(program.wait().output, HasSubstr("go on"));
}

TEST_F(InstallEndToEnd, BytesThatAreNoTextPassAsTheyAre) {
    writeUv(folder, "printf '\\377\\033[1m\\n'\n");
    EXPECT_THAT(run(install({repository, "--yes"})).errors, HasSubstr("\n\377\033[1m\n"));
}

TEST_F(InstallEndToEnd, ProjectIsNamedAsDepsShowsIt) {
    folder.write("weather/api/requirements.txt", "");
    const auto result = run(install({repository, "api", "--yes"}));
    EXPECT_EQ(result.output, "Synced Python dependencies in " + repository + "\n");
    EXPECT_THAT(contentOf(folder / "installed"), StartsWith(repository + "/api pip install"));
}

TEST_F(InstallEndToEnd, WithoutANameTheFolderDecides) {
    const std::string api = folder.makeFolder("weather/api");
    folder.write("weather/api/requirements.txt", "");
    run(install({api, "--yes"}));
    EXPECT_THAT(contentOf(folder / "installed"), StartsWith(api + " pip install"));
}

TEST_F(InstallEndToEnd, OfSeveralProjectsNoneIsGuessed) {
    folder.write("weather/api/requirements.txt", "");
    const auto result = run(install({folder.makeFolder("weather/docs"), "--yes"}));
    EXPECT_EQ(result.errors, "tarnbeck-cli: " + repository +
                                 ": more than one project is in it; name one behind the path:\n"
                                 "tarnbeck-cli:   .  Python, pip\n"
                                 "tarnbeck-cli:   api  Python, pip\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(InstallEndToEnd, FolderThatIsBothKindsGivesBothPlansNodeFirst) {
    folder.write("weather/package.json", "{}");
    folder.write("weather/yarn.lock", "");
    EXPECT_THAT(run(install({repository})).errors,
                StartsWith("Update Node dependencies (yarn, .)\n  in " + repository +
                           ":\n    $ yarn upgrade\nSync Python dependencies\n"));
}

TEST_F(InstallEndToEnd, PlanThatCantBeMadeIsToldAndTheOtherIsStillOffered) {
    folder.write("weather/package.json", "{}");
    folder.write("weather/yarn.lock", "");
    fs::remove_all(folder / "weather/.venv");
    const auto result = run(install({repository}));
    EXPECT_THAT(result.errors,
                StartsWith("tarnbeck-cli: " + repository +
                           " (.): No local Python virtualenv found (.venv/ or venv/).\n"
                           "Update Node dependencies (yarn, .)\n"));
    EXPECT_EQ(result.status, 1);
}

TEST_F(InstallEndToEnd, WithoutAnyPlanNothingIsAsked) {
    fs::remove_all(folder / "weather/.venv");
    const auto result = run(onTerminal({repository}));
    EXPECT_THAT(withoutTerminalCodes(result.output),
                EndsWith(" (.): No local Python virtualenv found (.venv/ or venv/).\n"));
    EXPECT_EQ(result.status, 1);
}

TEST_F(InstallEndToEnd, CheckThatFailedIsToldAndIsNoObstacle) {
    writeBrokenEnvironment(folder, "weather");
    writeUv(folder, "case \"$*\" in *list*) exit 1;; esac\n");
    const auto result = run(install({repository, "--yes"}));
    EXPECT_THAT(result.errors, StartsWith("tarnbeck-cli: " + repository +
                                          " (.): Could not list installed packages\n"));
    EXPECT_EQ(result.status, 0);
}

TEST_F(InstallEndToEnd, RepositoryWithoutProjectsIsNamed) {
    const std::string plain = makeRepository(folder / "plain");
    const auto result = run(install({plain, "--yes"}));
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: " + plain + ": there is no Node or Python project in it\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(InstallEndToEnd, MissingPathIsNamed) {
    const auto result = run(install({"missing", "--yes"}));
    EXPECT_EQ(result.errors, "tarnbeck-cli: missing: does not exist\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(InstallEndToEnd, PathOutsideAnyRepositoryIsNamed) {
    const auto result = run(install({folder.path()}));
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: " + folder.path() + ": is neither a git repository nor inside one\n");
    EXPECT_EQ(result.status, 1);
}

}  // namespace
}  // namespace tarnbeck::testing
