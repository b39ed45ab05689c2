#include <filesystem>

#include "DependencyScanner+Python.h"
#include "PythonPrograms.h"
#include "PythonUpdates.h"
#include "RecordedCommands.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const std::string onePackage = R"([{"name": "a", "version": "1.0"}])";
const std::string oneUpdate = R"([{"name": "a", "version": "1.0", "latest_version": "2.0"}])";

// A project with an interpreter whose answers, and those of uv, are recorded.
class PythonScan : public ::testing::Test {
  protected:
    PythonScan() {
        makeExecutable("repo/api/.venv/bin/python3");
        answerPrograms();
    }

    std::string makeExecutable(const std::string& name) {
        const std::string path = folder.write(name, "");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    // Nothing is blocked, and all is of the environment.
    void answerPrograms() { commands.answer(" -c ", printed(R"({"blocked": []})")); }
    void addUv() { tools.uvCandidates = {folder / "no-uv", makeExecutable("bin/uv")}; }
    void pipSays(const CommandResult& result) {
        commands.answer("-m pip list --outdated --format=json", result);
    }
    void uvSays(const CommandResult& result) {
        commands.answer("uv pip list --outdated --format=json", result);
    }
    // Both answers of a route that works, and what the index says.
    void indexSays(const CommandResult& result) {
        commands.answer("-m pip list --format=json", printed(onePackage));
        commands.answer(onePackage, result);
    }
    // The same where only uv can list.
    void indexSaysAfterUv(const CommandResult& result) {
        addUv();
        pipSays(failed(1));
        uvSays(failed(1));
        commands.answer("uv pip list --format=json", printed(onePackage));
        commands.answer(onePackage, result);
    }
    DependencyEcosystemResult scanned() {
        return scanPythonProject(tools, {.projectPath = project, .repoPath = repo});
    }
    std::vector<DependencyUpdate> updates(const DependencyEcosystemResult& result) {
        return {result.updates.begin(), result.updates.end()};
    }
    void expectVerdict(const DependencyEcosystemResult& result, const std::string& manager,
                       DependencyHealth status, const std::optional<std::string>& message) {
        EXPECT_EQ(result, (DependencyEcosystemResult{.ecosystem = DependencyEcosystem::python,
                                                     .project = "api",
                                                     .manager = manager,
                                                     .status = status,
                                                     .message = message}));
    }
    void expectOneUpdate(const std::string& manager) {
        const auto result = scanned();
        EXPECT_EQ(result.manager, manager);
        EXPECT_EQ(result.status, DependencyHealth::updatesAvailable);
        EXPECT_EQ(result.message, std::nullopt);
        EXPECT_THAT(updates(result),
                    ElementsAre(pythonUpdate("a", "1.0", "2.0", DependencyUpdateOrigin::venvOnly)));
    }

    TemporaryFolder folder;
    const std::string repo = folder / "repo";
    const std::string project = folder / "repo/api";
    const std::string python = folder / "repo/api/.venv/bin/python3";
    RecordedCommands commands;
    DependencyTools tools{.runCommand = commands.runner()};
};

class PythonScan_Pip : public PythonScan {};
class PythonScan_Uv : public PythonScan {};
class PythonScan_Index : public PythonScan {};
class PythonScan_Verdict : public PythonScan {};

TEST_F(PythonScan, WithoutAnEnvironmentAsksForAnInstallAndRunsNothing) {
    std::filesystem::remove_all(project + "/.venv");
    expectVerdict(scanned(), "pip", DependencyHealth::syncNeeded,
                  "No local virtualenv found (.venv/ or venv/). Install to sync.");
    EXPECT_THAT(commands.lines(), IsEmpty());
}

TEST_F(PythonScan, ProjectInTheRootIsADot) {
    const auto result = scanPythonProject(tools, {.projectPath = project, .repoPath = project});
    EXPECT_EQ(result.project, ".");
}

TEST_F(PythonScan, ProjectsAreScannedOneAfterTheOtherByPath) {
    const auto results = scanPython(
        tools, {.projectPaths = {repo + "/web/", repo + "/x/../docs", project}, .repoPath = repo});
    ASSERT_THAT(results, SizeIs(3));
    EXPECT_EQ(results[0].project, "api");
    EXPECT_EQ(results[1].project, "docs");
    EXPECT_EQ(results[2].project, "web");
}

TEST_F(PythonScan, UntilThenEachProjectIsBeingChecked) {
    const auto results =
        initialPythonSummaries({.projectPaths = {project, repo}, .repoPath = repo});
    ASSERT_THAT(results, SizeIs(2));
    EXPECT_EQ(results[0].project, ".");
    expectVerdict(results[1], "pip", DependencyHealth::checking, std::nullopt);
    EXPECT_THAT(commands.lines(), IsEmpty());
}

TEST_F(PythonScan_Pip, IsAskedFirstInTheProjectForNinetySeconds) {
    scanned();
    const Command& command = commands.commands().front();
    EXPECT_EQ(commandLine(command), python + " -m pip list --outdated --format=json");
    EXPECT_EQ(command.cwd, project);
    EXPECT_EQ(command.timeout, 90s);
}

TEST_F(PythonScan_Pip, ItsUpdatesAreTheVerdict) {
    pipSays(printed(" \n" + oneUpdate + "\n"));
    expectOneUpdate("pip");
}

TEST_F(PythonScan_Pip, ReadableAnswerCountsWhateverTheStatus) {
    pipSays(printed(oneUpdate, 2));
    expectOneUpdate("pip");
}

TEST_F(PythonScan_Pip, SilenceIsGoodNewsWhenItEndedWell) {
    pipSays(printed(" \n"));
    expectVerdict(scanned(), "pip", DependencyHealth::upToDate, std::nullopt);
    EXPECT_THAT(commands.lines(), SizeIs(1));
}

TEST_F(PythonScan_Pip, EmptyListIsUpToDateAndRunsNothingFurther) {
    pipSays(printed("[]"));
    expectVerdict(scanned(), "pip", DependencyHealth::upToDate, std::nullopt);
    EXPECT_THAT(commands.lines(), SizeIs(1));
}

TEST_F(PythonScan_Pip, FailureIsFollowedByUv) {
    addUv();
    pipSays(failed(1));
    uvSays(printed(oneUpdate));
    expectOneUpdate("uv");
}

TEST_F(PythonScan_Pip, BannerIsFollowedByUvAndNotByPipAgain) {
    addUv();
    pipSays(printed("Package Version\n" + oneUpdate));
    uvSays(printed("[]"));
    expectVerdict(scanned(), "uv", DependencyHealth::upToDate, std::nullopt);
    EXPECT_THAT(commands.lines(), SizeIs(2));
}

TEST_F(PythonScan_Pip, TimeoutIsFollowedByUv) {
    addUv();
    pipSays({.terminationStatus = 0, .timedOut = true});
    uvSays(printed(oneUpdate));
    expectOneUpdate("uv");
}

TEST_F(PythonScan_Uv, IsAskedForTheProjectsInterpreterForNinetySeconds) {
    addUv();
    pipSays(failed(1));
    uvSays(printed("[]"));
    scanned();
    ASSERT_THAT(commands.commands(), SizeIs(2));
    const Command& command = commands.commands().back();
    EXPECT_EQ(commandLine(command),
              (folder / "bin/uv") + " pip list --outdated --format=json --python " + python);
    EXPECT_EQ(command.cwd, project);
    EXPECT_EQ(command.timeout, 90s);
}

TEST_F(PythonScan_Uv, SilenceIsGoodNewsWhenItEndedWell) {
    addUv();
    pipSays(failed(1));
    uvSays(printed(""));
    expectVerdict(scanned(), "uv", DependencyHealth::upToDate, std::nullopt);
}

TEST_F(PythonScan_Uv, FailureIsFollowedByTheIndex) {
    addUv();
    pipSays(failed(1));
    uvSays(failed(2));
    indexSays(printed(oneUpdate));
    expectOneUpdate("pip");
}

TEST_F(PythonScan_Uv, UnreadableAnswerIsFollowedByTheIndex) {
    addUv();
    pipSays(failed(1));
    uvSays(printed("error: no"));
    indexSays(printed(oneUpdate));
    expectOneUpdate("pip");
}

TEST_F(PythonScan_Uv, WithoutItTheIndexFollows) {
    pipSays(failed(1));
    indexSays(printed(oneUpdate));
    expectOneUpdate("pip");
}

TEST_F(PythonScan_Index, IsAskedWithTheTrimmedListing) {
    pipSays(failed(1));
    commands.answer("-m pip list --format=json", printed("\t" + onePackage + " \n"));
    scanned();
    ASSERT_THAT(commands.commands(), SizeIs(3));
    const Command& listing = commands.commands()[1];
    EXPECT_EQ(commandLine(listing), python + " -m pip list --format=json");
    EXPECT_EQ(listing.cwd, project);
    EXPECT_EQ(listing.timeout, 30s);
    const Command& program = commands.commands()[2];
    EXPECT_EQ(program.executable, python);
    EXPECT_THAT(program.args, ElementsAre("-c", PythonPrograms::pypi, onePackage));
    EXPECT_EQ(program.timeout, 120s);
}

TEST_F(PythonScan_Index, UvListsWhatPipCanNot) {
    indexSaysAfterUv(printed(oneUpdate));
    expectOneUpdate("uv");
    const Command& listing = commands.commands()[3];
    EXPECT_EQ(commandLine(listing),
              (folder / "bin/uv") + " pip list --format=json --python " + python);
    EXPECT_EQ(listing.timeout, 30s);
}

TEST_F(PythonScan_Index, ListingThatNeitherCanGiveIsAnErrorOfUv) {
    addUv();
    expectVerdict(scanned(), "uv", DependencyHealth::error, "Could not list installed packages");
}

TEST_F(PythonScan_Index, ListingThatPipCanNotGiveIsAnErrorOfPipWithoutUv) {
    expectVerdict(scanned(), "pip", DependencyHealth::error, "Could not list installed packages");
}

TEST_F(PythonScan_Index, EmptyListingIsAnErrorToo) {
    commands.answer("-m pip list", printed(" \n"));
    pipSays(failed(1));
    expectVerdict(scanned(), "pip", DependencyHealth::error, "Could not list installed packages");
}

TEST_F(PythonScan_Index, TimeoutIsAnError) {
    pipSays(failed(1));
    indexSays({.terminationStatus = 15, .stdout = oneUpdate, .timedOut = true});
    expectVerdict(scanned(), "pip", DependencyHealth::error, "Timeout checking PyPI for updates");
}

TEST_F(PythonScan_Index, FailedProgramIsAnError) {
    pipSays(failed(1));
    indexSays(failed(1));
    expectVerdict(scanned(), "pip", DependencyHealth::error, "Could not check PyPI for updates");
}

TEST_F(PythonScan_Index, TimeoutAfterAListingOfUvIsAnErrorOfUv) {
    indexSaysAfterUv({.terminationStatus = 15, .timedOut = true});
    expectVerdict(scanned(), "uv", DependencyHealth::error, "Timeout checking PyPI for updates");
}

TEST_F(PythonScan_Index, FailedProgramAfterAListingOfUvIsAnErrorOfUv) {
    indexSaysAfterUv(failed(1));
    expectVerdict(scanned(), "uv", DependencyHealth::error, "Could not check PyPI for updates");
}

TEST_F(PythonScan_Index, SilentProgramAfterAListingOfUvIsUpToDateByUv) {
    indexSaysAfterUv(printed(""));
    expectVerdict(scanned(), "uv", DependencyHealth::upToDate, std::nullopt);
}

TEST_F(PythonScan_Index, ProgramThatCanNotBeLaunchedIsAnError) {
    pipSays(failed(1));
    indexSays({.launchError = "Failed to launch command: Argument list too long"});
    expectVerdict(scanned(), "pip", DependencyHealth::error, "Could not check PyPI for updates");
}

TEST_F(PythonScan_Index, ReadableAnswerOfAFailedProgramCounts) {
    pipSays(failed(1));
    indexSays(printed(oneUpdate, 1));
    expectOneUpdate("pip");
}

TEST_F(PythonScan_Index, SilentOrUnreadableProgramThatEndedWellIsUpToDate) {
    pipSays(failed(1));
    for (const char* text : {"", " \n", "no json"}) {
        indexSays(printed(text));
        expectVerdict(scanned(), "pip", DependencyHealth::upToDate, std::nullopt);
    }
}

TEST_F(PythonScan_Verdict, UpdateToWhatIsRequiredAlreadyIsUpToDateWithADriftMessage) {
    folder.write("repo/api/requirements.txt", "a>=2.0\n");
    pipSays(printed(oneUpdate));
    expectVerdict(scanned(), "pip", DependencyHealth::upToDate,
                  "Local virtualenv lags behind requirements for 1 package(s); showing resolved "
                  "sources");
}

TEST_F(PythonScan_Verdict, DriftAloneNeedsNoSync) {
    folder.write("repo/api/requirements.txt", "a==1.5\n");
    pipSays(printed(oneUpdate));
    const auto result = scanned();
    EXPECT_EQ(result.status, DependencyHealth::updatesAvailable);
    EXPECT_THAT(updates(result), ElementsAre(pythonUpdate("a", "1.5", "2.0")));
}

TEST_F(PythonScan_Verdict, OnlyBlockedUpdatesAreConstraints) {
    pipSays(printed(oneUpdate));
    commands.answer(" -c ", printed(R"({"blocked": [{"package": "a", "latest": "2.0",
                                       "reason": "B 1 (installed) requires a<2"}]})"));
    const auto result = scanned();
    EXPECT_EQ(result.status, DependencyHealth::constraints);
    EXPECT_EQ(result.message,
              "1 update(s) blocked by constraints: a==2.0 blocked: B 1 (installed) requires a<2");
}

TEST_F(PythonScan_Verdict, OneUpdateThatIsNotBlockedIsAvailable) {
    pipSays(printed(R"([{"name": "a", "version": "1", "latest": "2"},
                        {"name": "b", "version": "1", "latest": "2"}])"));
    commands.answer(" -c ", printed(R"({"blocked": [{"package": "a", "latest": "2",
                                       "reason": "r"}]})"));
    EXPECT_EQ(scanned().status, DependencyHealth::updatesAvailable);
}

TEST_F(PythonScan_Verdict, StepBackIsNoUpdate) {
    pipSays(printed(R"([{"name": "a", "version": "2", "latest": "1"}])"));
    expectVerdict(scanned(), "pip", DependencyHealth::upToDate, std::nullopt);
}

TEST_F(PythonScan_Verdict, ProgramsSeeTheReconciledUpdates) {
    folder.write("repo/api/requirements.txt", "a==2.0\n");
    pipSays(printed(R"([{"name": "a", "version": "1.0", "latest_version": "2.0"},
                        {"name": "b", "version": "1.0", "latest_version": "2.0"}])"));
    scanned();
    ASSERT_THAT(commands.commands(), SizeIs(3));
    EXPECT_EQ(commands.commands()[1].args[2], R"([{"package":"b","latest":"2.0"}])");
    EXPECT_EQ(commands.commands()[2].args[2], R"(["b"])");
}

TEST_F(PythonScan_Verdict, TimeoutsAreParameters) {
    tools.timeouts = {.pythonOutdated = 1s, .pythonList = 2s, .pypi = 3s};
    pipSays(failed(1));
    indexSays(printed("[]"));
    scanned();
    ASSERT_THAT(commands.commands(), SizeIs(3));
    EXPECT_EQ(commands.commands()[0].timeout, 1s);
    EXPECT_EQ(commands.commands()[1].timeout, 2s);
    EXPECT_EQ(commands.commands()[2].timeout, 3s);
}

}  // namespace
}  // namespace tarnbeck::testing
