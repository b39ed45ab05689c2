#include <csignal>
#include <filesystem>

#include "GitFixture.h"
#include "Json.h"
#include "PlayedTools.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
namespace fs = std::filesystem;

// No package manager is asked: a Yarn project needs none, and Python's environments are played.
class DepsEndToEnd : public ::testing::Test {
  protected:
    std::string yarnProject(const std::string& name) {
        const std::string path = makeRepository(folder / name);
        folder.write(name + "/package.json", "{}");
        folder.write(name + "/yarn.lock", "");
        return path;
    }
    std::string pythonProject(const std::string& name) {
        const std::string path = makeRepository(folder / name);
        folder.write(name + "/requirements.txt", "");
        return path;
    }
    ProgramCall deps(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "deps");
        return {.arguments = std::move(arguments), .home = folder.path()};
    }
    std::string cacheFile() const { return folder / ".config/tarnbeck/dependency-cache.json"; }
    // What is remembered of the Yarn project, told apart from a new check.
    void changeWhatIsRemembered() {
        std::string text = contentOf(cacheFile());
        const std::string words = "Yarn support is not implemented yet";
        text.replace(text.find(words), words.size(), "remembered");
        folder.write(".config/tarnbeck/dependency-cache.json", text);
    }

    TemporaryFolder folder;
};

TEST_F(DepsEndToEnd, ProjectsAreListedWithWhatIsToBeSaidOfThem) {
    const std::string path = yarnProject("weather");
    folder.write("weather/api/requirements.txt", "");
    const auto result = run(deps({path}));
    EXPECT_EQ(result.output,
              "weather  install sync needed\n"
              "  Node    .    yarn  unknown\n"
              "    Yarn support is not implemented yet\n"
              "  Python  api  pip   sync needed\n"
              "    No local virtualenv found (.venv/ or venv/). Install to sync.\n"
              "1 repository · 2 projects · 1 sync needed · 1 unknown\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST_F(DepsEndToEnd, OutdatedPackagesAreListedWithTheirVersions) {
    const std::string path = pythonProject("weather");
    writeEnvironment(folder, "weather",
                     R"([{"name":"requests","version":"2.0.0","latest_version":"3.1.0"}])");
    const auto result = run(deps({path}));
    EXPECT_THAT(result.output, HasSubstr("weather  1 updateable (1 major)\n"
                                         "  Python  .  pip  updates available\n"
                                         "    requests  2.0.0  → 3.1.0  major"));
    EXPECT_EQ(result.status, 0);
}

TEST_F(DepsEndToEnd, RepositoryWithoutProjectsIsCountedOnly) {
    const auto result = run(deps({makeRepository(folder / "plain")}));
    EXPECT_EQ(result.output, "1 repository · 1 without projects\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(DepsEndToEnd, WithoutPathTheConfiguredRepositoriesAreCheckedByName) {
    yarnProject("projects/beta");
    yarnProject("projects/alpha");
    const std::string output = run(deps({})).output;
    EXPECT_LT(output.find("alpha  "), output.find("beta  "));
    EXPECT_THAT(output, EndsWith("\n2 repositories · 2 projects · 2 unknown\n"));
}

TEST_F(DepsEndToEnd, ConfiguredRepositoryThatIsGoneIsNamedAndGivesOne) {
    yarnProject("projects/alpha");
    folder.write(".config/tarnbeck/config.json", R"({"repoPaths":["~/projects/alpha","~/gone"]})");
    const auto result = run(deps({}));
    EXPECT_EQ(result.errors, "tarnbeck-cli: " + (folder / "gone") + ": does not exist\n");
    EXPECT_THAT(result.output, EndsWith("\n1 repository · 1 project · 1 unknown\n"));
    EXPECT_EQ(result.status, 1);
}

TEST_F(DepsEndToEnd, NothingToCheckTellsTheWayOn) {
    EXPECT_THAT(run(deps({})).output, HasSubstr("No repositories found below ~/projects."));
}

TEST_F(DepsEndToEnd, PathInsideAWorkTreeMeansTheRepository) {
    yarnProject("weather");
    EXPECT_THAT(run(deps({folder.makeFolder("weather/docs")})).output, HasSubstr("weather  "));
}

TEST_F(DepsEndToEnd, FolderWithoutRepositoriesIsNamedAndGivesZero) {
    const auto result = run(deps({folder.makeFolder("empty")}));
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: " + (folder / "empty") + ": no repository found below it\n");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 0);
}

TEST_F(DepsEndToEnd, PathThatDoesNotExistIsAFailure) {
    const auto result = run(deps({folder / "gone"}));
    EXPECT_EQ(result.errors, "tarnbeck-cli: " + (folder / "gone") + ": does not exist\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(DepsEndToEnd, RepositoriesOfOneNameHaveTheirFolderBeforeIt) {
    yarnProject("one/app");
    yarnProject("two/app");
    const std::string output = run(deps({folder.path()})).output;
    EXPECT_THAT(output, HasSubstr("one/app  dependency state unknown\n"));
    EXPECT_THAT(output, HasSubstr("two/app  dependency state unknown\n"));
}

TEST_F(DepsEndToEnd, CheckThatFailedSaysWhyOnStandardErrorAndGivesOne) {
    const std::string path = pythonProject("weather");
    writeBrokenEnvironment(folder, "weather");
    writeUv(folder, "exit 1\n");
    const auto result = run(deps({path}));
    EXPECT_EQ(result.errors, "tarnbeck-cli: " + path + " (.): Could not list installed packages\n");
    EXPECT_THAT(result.output, HasSubstr("weather  dependency check failed\n"));
    EXPECT_THAT(result.output, EndsWith("1 repository · 1 project · 1 check failed\n"));
    EXPECT_EQ(result.status, 1);
}

TEST_F(DepsEndToEnd, JsonOfAFailureIsPureAndGivesOne) {
    const std::string path = pythonProject("weather");
    writeBrokenEnvironment(folder, "weather");
    writeUv(folder, "exit 1\n");
    const auto result = run(deps({"--json", path, folder / "gone"}));
    const auto json = parsedJson(result.output);
    ASSERT_TRUE(json) << result.output;
    EXPECT_EQ(json->as_array().at(0).at("status").as_string(), "error");
    EXPECT_THAT(result.errors, HasSubstr("Could not list installed packages"));
    EXPECT_THAT(result.errors, HasSubstr("does not exist"));
    EXPECT_EQ(result.status, 1);
}

TEST_F(DepsEndToEnd, JsonHoldsEachRepositoryAlsoThoseWithoutProjects) {
    makeRepository(folder / "all/plain");
    const std::string path = yarnProject("all/weather");
    const auto result = run(deps({"--json", folder / "all"}));
    const auto json = parsedJson(result.output);
    ASSERT_TRUE(json) << result.output;
    ASSERT_EQ(json->as_array().size(), 2);
    const JsonValue& plain = json->as_array().at(0);
    EXPECT_EQ(plain.at("status").as_string(), "notApplicable");
    EXPECT_TRUE(plain.at("inlineSummary").is_null());
    EXPECT_TRUE(plain.at("summary").at("checkedAt").is_null());
    const JsonValue& weather = json->as_array().at(1);
    EXPECT_EQ(weather.at("path").as_string(), path);
    EXPECT_EQ(weather.at("inlineSummary").as_string(), "dependency state unknown");
    const JsonValue& project = weather.at("summary").at("ecosystems").as_array().at(0);
    EXPECT_EQ(project.at("ecosystem").as_string(), "Node");
    EXPECT_EQ(project.at("project").as_string(), ".");
    EXPECT_EQ(project.at("manager").as_string(), "yarn");
    EXPECT_EQ(weather.at("summary").at("checkedAt").as_string().size(), 20);
}

TEST_F(DepsEndToEnd, JsonOfNothingIsAnEmptyArray) {
    EXPECT_EQ(run(deps({"--json", folder.makeFolder("empty")})).output, "[]\n");
}

TEST_F(DepsEndToEnd, SecondRunAnswersFromTheCache) {
    const std::string path = yarnProject("weather");
    run(deps({path}));
    changeWhatIsRemembered();
    EXPECT_THAT(run(deps({path})).output, HasSubstr("    remembered\n"));
}

TEST_F(DepsEndToEnd, RefreshPassesTheCacheBy) {
    const std::string path = yarnProject("weather");
    run(deps({path}));
    changeWhatIsRemembered();
    EXPECT_THAT(run(deps({"--refresh", path})).output, Not(HasSubstr("remembered")));
    EXPECT_THAT(contentOf(cacheFile()), Not(HasSubstr("remembered")));
}

TEST_F(DepsEndToEnd, ChangedManifestIsCheckedAnew) {
    const std::string path = yarnProject("weather");
    run(deps({path}));
    changeWhatIsRemembered();
    folder.write("weather/bun.lock", "");
    EXPECT_THAT(run(deps({path})).output, HasSubstr("Yarn support is not implemented yet"));
}

TEST_F(DepsEndToEnd, BrokenCacheIsNoObstacleAndIsReplaced) {
    const std::string path = yarnProject("weather");
    folder.write(".config/tarnbeck/dependency-cache.json", "[");
    const auto result = run(deps({path}));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(parsedJson(contentOf(cacheFile())));
}

TEST_F(DepsEndToEnd, CacheThatCantBeWrittenIsNoObstacle) {
    const std::string path = yarnProject("weather");
    fs::permissions(folder.makeFolder(".config/tarnbeck"),
                    fs::perms::owner_read | fs::perms::owner_exec);
    ProgramCall call = deps({path});
    call.withoutPrivileges = true;
    const auto result = run(call);
    EXPECT_THAT(result.output, HasSubstr("Yarn support is not implemented yet"));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_FALSE(fs::exists(cacheFile()));
}

// After a failure of everything the last good verdict is shown, and that it is old.
TEST_F(DepsEndToEnd, LastGoodVerdictThatIsShownAgainHasItsTime) {
    const std::string path = pythonProject("weather");
    writeUv(folder, "exit 1\n");
    writeEnvironment(folder, "weather", "[]");
    EXPECT_THAT(run(deps({path})).output, HasSubstr("weather  dependencies up to date\n"));
    writeBrokenEnvironment(folder, "weather");
    const auto result = run(deps({"--refresh", path}));
    EXPECT_THAT(result.output, HasSubstr("weather  dependencies up to date, as of 2"));
    EXPECT_EQ(result.status, 0);
}

TEST_F(DepsEndToEnd, ProgressShowsOnATerminalsStandardError) {
    ProgramCall call = deps({yarnProject("weather")});
    call.errors = ProgramCall::Errors::terminal;
    const auto result = run(call);
    EXPECT_THAT(result.errors, HasSubstr("Checking dependencies 1/1 weather"));
    EXPECT_THAT(result.errors, EndsWith("\r\033[K"));
}

TEST_F(DepsEndToEnd, TerminalGetsColor) {
    ProgramCall call = deps({yarnProject("weather")});
    call.output = ProgramCall::Output::terminal;
    EXPECT_THAT(run(call).output, HasSubstr("\033[90munknown\033[0m"));
}

// What was found before is kept, and nothing of what was cut off.
TEST_F(DepsEndToEnd, InterruptKeepsTheLastVerdictOfEach) {
    const std::string good = yarnProject("all/alpha");
    const std::string stuck = pythonProject("all/beta");
    writeEnvironment(folder, "all/beta", "[]");
    run(deps({stuck}));
    writeProgram(folder, "all/beta/.venv/bin/python3", "sleep 1000\n");
    RunningProgram program(deps({"--refresh", folder / "all"}));
    EXPECT_TRUE(program.readUntil("alpha  "));
    program.signal(SIGINT);
    EXPECT_EQ(program.wait().signal, SIGINT);
    const auto json = parsedJson(contentOf(cacheFile()));
    ASSERT_TRUE(json);
    EXPECT_TRUE(json->as_object().contains(good));
    EXPECT_THAT(run(deps({"--json", stuck})).output, HasSubstr("up to date"));
}

}  // namespace
}  // namespace tarnbeck::testing
