#include <filesystem>

#include "PythonUpdates.h"
#include "RealPythonFixture.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr auto direct = DependencyUpdateOrigin::manifestDirect;
constexpr auto transitive = DependencyUpdateOrigin::manifestTransitive;
constexpr auto venvOnly = DependencyUpdateOrigin::venvOnly;

const std::string threePackages = R"({
    "Alpha": {"releases": {"1.0": ["beta<2"]}},
    "beta": {"releases": {"1.0": [], "2.1": []}},
    "Gam_ma.x": {"releases": {"1.0": [], "1.1": []}},
    "pip": {"fault": "404"}})";

DependencyUpdate blockedUpdate(DependencyUpdate update) {
    update.updateType = DependencyUpdateType::blocked;
    return update;
}

class RealPython : public RealPythonFixture {
  protected:
    std::vector<DependencyUpdate> updates(const DependencyEcosystemResult& result) {
        return {result.updates.begin(), result.updates.end()};
    }
    // An interpreter in the project's environment that is a script.
    std::string pretendInterpreter(const std::string& script) {
        const std::string path = folder_.write("repo/.venv/bin/python3", "#!/bin/sh\n" + script);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
};

TEST_F(RealPython, OutdatedPackagesAreListedBlockedAndTiedToTheManifest) {
    serve(threePackages);
    install(makeEnvironment(), {"Alpha==1.0", "beta==1.0", "Gam_ma.x==1.0"});
    folder_.write("repo/requirements.txt", "alpha==1.0\r\n");
    const auto result = scanned();
    EXPECT_EQ(result.manager, "pip");
    EXPECT_EQ(result.status, DependencyHealth::updatesAvailable);
    EXPECT_EQ(result.message,
              "1 update(s) blocked by constraints: beta==2.1 blocked: Alpha 1.0 (pinned in "
              "requirements.txt) requires beta<2");
    EXPECT_THAT(updates(result),
                ElementsAre(blockedUpdate(pythonUpdate("beta", "1.0", "2.1", transitive)),
                            pythonUpdate("Gam_ma.x", "1.0", "1.1", venvOnly)));
}

TEST_F(RealPython, StaleEnvironmentIsSeenFromTheManifest) {
    serve(threePackages);
    install(makeEnvironment(), {"beta==1.0", "Gam_ma.x==1.0"});
    folder_.write("repo/requirements.txt", "beta==2.1\n");
    folder_.write("repo/requirements-dev.txt", "gam-ma.x>=1.0\n");
    const auto result = scanned();
    EXPECT_EQ(result.status, DependencyHealth::updatesAvailable);
    EXPECT_EQ(result.message,
              "Local virtualenv lags behind requirements for 1 package(s); showing "
              "manifest-based versions");
    EXPECT_THAT(updates(result), ElementsAre(pythonUpdate("Gam_ma.x", "1.0", "1.1", direct)));
}

TEST_F(RealPython, ParentsEnvironmentThatFitsBetterIsTaken) {
    serve(threePackages);
    install(makeEnvironment("repo/.venv"), {"beta==1.0", "Gam_ma.x==1.0"});
    install(makeEnvironment("repo/apps/.venv"), {"Gam_ma.x==1.0"});
    folder_.write("repo/apps/web/requirements.txt", "beta>=1.0\ngam-ma.x>=1.0\n");
    const auto result = scanned("repo/apps/web");
    EXPECT_EQ(result.project, "apps/web");
    EXPECT_THAT(updates(result), ElementsAre(pythonUpdate("beta", "1.0", "2.1", direct),
                                             pythonUpdate("Gam_ma.x", "1.0", "1.1", direct)));
}

TEST_F(RealPython, IndexThatIsDeadLooksUpToDateSincePipSaysSo) {
    serve(threePackages);
    install(makeEnvironment(), {"beta==1.0"});
    stopServer();
    const auto result = scanned();
    EXPECT_EQ(result.status, DependencyHealth::upToDate);
    EXPECT_EQ(result.message, std::nullopt);
}

TEST_F(RealPython, IndexThatAnswersWithErrorsLooksUpToDateSincePipSaysSo) {
    serve(threePackages);
    install(makeEnvironment(), {"beta==1.0"});
    stopServer();
    serve(R"({"beta": {"fault": "500"}, "pip": {"fault": "404"}})");
    EXPECT_EQ(scanned().status, DependencyHealth::upToDate);
}

TEST_F(RealPython, EnvironmentWithoutPipCanNotBeListed) {
    makeEnvironmentWithoutPip();
    const auto result = scanned();
    EXPECT_EQ(result.status, DependencyHealth::error);
    EXPECT_EQ(result.manager, "pip");
    EXPECT_EQ(result.message, "Could not list installed packages");
}

TEST_F(RealPython, EnvironmentWithoutPipIsListedByUvAndLookedUp) {
    serve(threePackages);
    makeEnvironmentWithoutPip();
    const std::string uv = folder_.write("uv",
                                         "#!/bin/sh\n"
                                         "case \"$*\" in *--outdated*) exit 2 ;; esac\n"
                                         "echo '[{\"name\": \"beta\", \"version\": \"1.0\"}]'\n");
    std::filesystem::permissions(uv, std::filesystem::perms::owner_all);
    tools_.uvCandidates = {uv};
    const auto result = scanned();
    EXPECT_EQ(result.manager, "uv");
    EXPECT_EQ(result.status, DependencyHealth::updatesAvailable);
    EXPECT_THAT(updates(result), ElementsAre(pythonUpdate("beta", "1.0", "2.1", venvOnly)));
}

TEST_F(RealPython, IndexThatStaysSilentIsTimedOut) {
    serve(R"({"beta": {"fault": "silent"}})");
    makeEnvironmentWithoutPip();
    const std::string uv = folder_.write("uv",
                                         "#!/bin/sh\n"
                                         "case \"$*\" in *--outdated*) exit 2 ;; esac\n"
                                         "echo '[{\"name\": \"beta\", \"version\": \"1.0\"}]'\n");
    std::filesystem::permissions(uv, std::filesystem::perms::owner_all);
    tools_.uvCandidates = {uv};
    tools_.timeouts.pypi = 1s;
    const auto result = scanned();
    EXPECT_EQ(result.status, DependencyHealth::error);
    EXPECT_EQ(result.message, "Timeout checking PyPI for updates");
}

TEST_F(RealPython, ListingThatIsTooLongForAnArgumentIsAnError) {
    const std::string uv = folder_.write("uv",
                                         "#!/bin/sh\ncase \"$*\" in *--outdated*) exit 2 ;; esac\n"
                                         "head -c 5000000 /dev/zero | tr '\\0' x\n");
    std::filesystem::permissions(uv, std::filesystem::perms::owner_all);
    tools_.uvCandidates = {uv};
    makeEnvironmentWithoutPip();
    const auto result = scanned();
    EXPECT_EQ(result.status, DependencyHealth::error);
    EXPECT_EQ(result.message, "Could not check PyPI for updates");
}

TEST_F(RealPython, JsonAndPackagingOfTheProjectAreNotImported) {
    serve(threePackages);
    install(makeEnvironment(), {"Alpha==1.0", "beta==1.0"});
    folder_.write("repo/json.py", "raise SystemExit(3)");
    folder_.write("repo/packaging/__init__.py", "raise SystemExit(3)");
    folder_.write("repo/requirements.txt", "alpha\n");
    EXPECT_THAT(updates(scanned()),
                ElementsAre(blockedUpdate(pythonUpdate("beta", "1.0", "2.1", transitive))));
}

TEST_F(RealPython, DanglingInterpreterIsNoEnvironment) {
    folder_.makeFolder("repo/.venv/bin");
    std::filesystem::create_symlink(folder_ / "gone", project_ + "/.venv/bin/python3");
    EXPECT_EQ(scanned().status, DependencyHealth::syncNeeded);
}

TEST_F(RealPython, InterpreterThatHangsIsTimedOut) {
    pretendInterpreter("exec sleep 600");
    tools_.timeouts.pythonOutdated = tools_.timeouts.pythonList = 200ms;
    const auto result = scanned();
    EXPECT_EQ(result.status, DependencyHealth::error);
    EXPECT_EQ(result.message, "Could not list installed packages");
}

TEST_F(RealPython, InterpreterThatPrintsRubbishIsUpToDateSinceItEndedWell) {
    pretendInterpreter("echo rubbish");
    EXPECT_EQ(scanned().status, DependencyHealth::upToDate);
}

TEST_F(RealPython, InterpreterThatPrintsRubbishAndFailsIsAnError) {
    pretendInterpreter("echo rubbish; case \"$1\" in -c) exit 1 ;; esac");
    EXPECT_EQ(scanned().message, "Could not check PyPI for updates");
}

TEST_F(RealPython, InterpreterThatCanNotBeLaunchedIsAnError) {
    std::filesystem::permissions(folder_.write("repo/.venv/bin/python3", "#!/gone\n"),
                                 std::filesystem::perms::owner_all);
    EXPECT_EQ(scanned().message, "Could not list installed packages");
}

TEST_F(RealPython, EnvironmentAsVenvMakesItIsChecked) {
    serve(R"({"pip": {"releases": {"999.0": []}}, "setuptools": {"fault": "404"}})");
    const auto made = run(installedProgram("python3"), {"-m", "venv", project_ + "/venv"});
    ASSERT_EQ(made.terminationStatus, 0) << made.stderr;
    const auto result = scanned();
    EXPECT_EQ(result.status, DependencyHealth::updatesAvailable);
    ASSERT_THAT(updates(result), ::testing::SizeIs(1));
    EXPECT_EQ(updates(result).front().package, "pip");
    EXPECT_EQ(updates(result).front().latestVersion, "999.0");
    EXPECT_EQ(updates(result).front().origin, venvOnly);
}

TEST_F(RealPython, UvIsAskedWhereTheMachineHasIt) {
    const std::string uv = installedProgram("uv");
    if (uv.empty()) GTEST_SKIP() << "uv is not installed";
    serve(threePackages);
    makeEnvironmentWithoutPip();
    tools_.uvCandidates = {uv};
    const auto result = scanned();
    EXPECT_EQ(result.manager, "uv");
    EXPECT_EQ(result.status, DependencyHealth::upToDate);
}

}  // namespace
}  // namespace tarnbeck::testing
