#include <chrono>

#include "NodeProjectFixture.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using namespace std::chrono_literals;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

using NodeProject_Command = NodeProjectFixture;
using NodeProject_Verdict = NodeProjectFixture;
using NodeProject_Failure = NodeProjectFixture;
using NodeProject_Faults = NodeProjectFixture;
using ScanNode = NodeProjectFixture;

DependencyUpdate nodeUpdate(const std::string& package, const NodeReport::Versions& versions,
                            DependencyUpdateType type) {
    return {.ecosystem = DependencyEcosystem::node,
            .package = package,
            .currentVersion = versions.current,
            .latestVersion = versions.latest,
            .updateType = type,
            .origin = DependencyUpdateOrigin::unknown};
}

DependencyEcosystemResult npmRoot(DependencyHealth status, std::optional<std::string> message) {
    return {.ecosystem = DependencyEcosystem::node,
            .project = ".",
            .manager = "npm",
            .status = status,
            .message = std::move(message)};
}

DependencyEcosystemResult npmError(std::string message) {
    return npmRoot(DependencyHealth::error, std::move(message));
}

TEST_F(NodeProject_Command, ManagerIsRunThroughEnvInTheProjectFor150Seconds) {
    commands.answer("npm outdated", printed("{}"));
    scanProject("web");
    ASSERT_EQ(commands.commands().size(), 1U);
    const Command& command = commands.commands().front();
    EXPECT_EQ(commandLine(command), "/usr/bin/env npm outdated --json");
    EXPECT_EQ(command.cwd, repo / "web");
    EXPECT_EQ(command.timeout, 150s);
}

TEST_F(NodeProject_Command, YarnIsNotRunAndSaidNotToBeSupported) {
    repo.write("yarn.lock", "");
    EXPECT_EQ(scanProject(),
              (DependencyEcosystemResult{.project = ".",
                                         .manager = "yarn",
                                         .status = DependencyHealth::unknown,
                                         .message = "Yarn support is not implemented yet"}));
    EXPECT_THAT(commands.commands(), IsEmpty());
}

TEST_F(NodeProject_Command, BunIsNotRunAndSaidNotToBeSupported) {
    repo.write("bun.lockb", "");
    EXPECT_EQ(scanProject(),
              (DependencyEcosystemResult{.project = ".",
                                         .manager = "bun",
                                         .status = DependencyHealth::unknown,
                                         .message = "Bun support is not implemented yet"}));
    EXPECT_THAT(commands.commands(), IsEmpty());
}

TEST_F(NodeProject_Command, MemberOfAPnpmWorkspaceIsCheckedWithPnpmWhateverItsOwnFilesSay) {
    repo.write("pnpm-lock.yaml", "");
    repo.write("web/yarn.lock", "");
    commands.answer("pnpm outdated", printed("{}"));
    const auto result = scanProject("web");
    EXPECT_EQ(result.manager, "pnpm");
    EXPECT_EQ(result.status, DependencyHealth::upToDate);
    EXPECT_THAT(commands.lines(),
                ElementsAre("/usr/bin/env pnpm outdated --json --filter ./web..."));
    EXPECT_EQ(commands.commands().front().cwd, repo.path());
}

TEST_F(NodeProject_Command, RootBesideAPnpmLockfileKeepsItsDeclaredManager) {
    repo.write("pnpm-lock.yaml", "");
    repo.write("package.json", R"({"packageManager": "npm@11.0.0"})");
    EXPECT_EQ(scanWhenNpmAnswers(printed("{}")).manager, "npm");
}

TEST_F(NodeProject_Verdict, StatusOneWithAReportIsANormalReport) {
    const auto result =
        scanWhenNpmAnswers(printed(NodeReport().with("p", {"1.0.0", "1.0.0", "1.0.0"}).text(), 1));
    EXPECT_EQ(result, npmRoot(DependencyHealth::upToDate, std::nullopt));
}

TEST_F(NodeProject_Verdict, NoOutputAndStatusZeroIsUpToDateWithoutAMessage) {
    EXPECT_EQ(scanWhenNpmAnswers(printed("")), npmRoot(DependencyHealth::upToDate, std::nullopt));
    EXPECT_EQ(scanWhenNpmAnswers(printed(" \t\n ")),
              npmRoot(DependencyHealth::upToDate, std::nullopt));
}

TEST_F(NodeProject_Verdict, OutputWithoutAReportAndStatusZeroIsUpToDate) {
    EXPECT_EQ(scanWhenNpmAnswers(printed("No projects matched the filters")),
              npmRoot(DependencyHealth::upToDate, std::nullopt));
}

TEST_F(NodeProject_Verdict, WarningsBeforeTheReportAreSkipped) {
    const auto result = scanWhenNpmAnswers(
        printed("warning: old\n  " + NodeReport().with("p", {"1.0.0", "1.0.0", "1.0.0"}).text()));
    EXPECT_EQ(result.status, DependencyHealth::upToDate);
}

TEST_F(NodeProject_Verdict, UpdateThatCanBeTakenIsAnAvailableOne) {
    const NodeReport::Versions versions = {"2.0.0", "1.9.0", "2.1.0"};
    const auto result = scanWhenNpmAnswers(printed(NodeReport().with("p", versions).text(), 1));
    EXPECT_EQ(result.status, DependencyHealth::updatesAvailable);
    EXPECT_THAT(result.updates,
                ElementsAre(nodeUpdate("p", versions, DependencyUpdateType::minor)));
    EXPECT_EQ(result.message, std::nullopt);
}

TEST_F(NodeProject_Verdict, OnlyHeldBackUpdatesAreConstraints) {
    const NodeReport::Versions versions = {"1.2.0", "1.2.0", "2.0.0"};
    const auto result = scanWhenNpmAnswers(printed(NodeReport().with("p", versions).text(), 1));
    EXPECT_EQ(result.status, DependencyHealth::constraints);
    EXPECT_THAT(result.updates,
                ElementsAre(nodeUpdate("p", versions, DependencyUpdateType::constrained)));
    EXPECT_EQ(result.message,
              "1 update(s) limited by current constraints: p@2.0.0 limited by current constraints "
              "(wanted 1.2.0)");
}

TEST_F(NodeProject_Verdict, OnlyALaggingInstallIsANeedToSync) {
    EXPECT_EQ(
        scanWhenNpmAnswers(printed(NodeReport().with("p", {"1.0.0", "1.2.0", "1.2.0"}).text(), 1)),
        npmRoot(DependencyHealth::syncNeeded,
                "Local install lags behind wanted versions for 1 package(s): p. Run install "
                "to sync."));
}

TEST_F(NodeProject_Verdict, LaggingInstallShortOfTheLatestHasBothMessages) {
    EXPECT_EQ(
        scanWhenNpmAnswers(printed(NodeReport().with("p", {"1.0.0", "1.2.0", "2.0.0"}).text(), 1)),
        npmRoot(DependencyHealth::syncNeeded,
                "Local install lags behind wanted versions for 1 package(s): p. Run install "
                "to sync. • 1 update(s) limited by current constraints: p@2.0.0 limited by "
                "current constraints (wanted 1.2.0)"));
}

TEST_F(NodeProject_Verdict, LatestBehindWhatIsInstalledIsUpToDate) {
    EXPECT_EQ(
        scanWhenNpmAnswers(printed(NodeReport().with("p", {"2.0.0", "2.0.0", "1.9.0"}).text(), 1)),
        npmRoot(DependencyHealth::upToDate, std::nullopt));
}

TEST_F(NodeProject_Verdict, NeedToSyncIsToldBesideUpdatesToo) {
    const auto result = scanWhenNpmAnswers(printed(NodeReport()
                                                       .with("a", {"1.0.0", "1.2.0", "1.2.0"})
                                                       .with("b", {"2.0.0", "1.0.0", "3.0.0"})
                                                       .text(),
                                                   1));
    EXPECT_EQ(result.status, DependencyHealth::updatesAvailable);
    EXPECT_EQ(result.message,
              "Local install lags behind wanted versions for 1 package(s): a. Run install to "
              "sync.");
    EXPECT_TRUE((DependencySummary{.ecosystems = {result}}.hasSyncNeeded()));
}

TEST_F(NodeProject_Verdict, OneOfBothKindsOfUpdatesIsAnAvailableOne) {
    EXPECT_EQ(scanWhenNpmAnswers(printed(NodeReport()
                                             .with("a", {"1.0.0", "1.0.0", "2.0.0"})
                                             .with("b", {"2.0.0", "1.0.0", "3.0.0"})
                                             .text(),
                                         1))
                  .status,
              DependencyHealth::updatesAvailable);
}

TEST_F(NodeProject_Verdict, NamesWithScopesCapitalsQuotesAndBlanksStayAsTheyAre) {
    const std::string text =
        R"({"@Scope/My_Pkg": {"current": "1", "latest": "2"},
            "it's \"quoted\"": {"current": "1", "latest": "2"},
            "--save": {"current": "1", "latest": "2"}, "a b": {"current": "1", "latest": "2"}})";
    const auto result = scanWhenNpmAnswers(printed(text, 1));
    EXPECT_THAT(result.updates, ElementsAre(Field(&DependencyUpdate::package, "--save"),
                                            Field(&DependencyUpdate::package, "@Scope/My_Pkg"),
                                            Field(&DependencyUpdate::package, "a b"),
                                            Field(&DependencyUpdate::package, "it's \"quoted\"")));
}

TEST_F(NodeProject_Verdict, ErrorObjectOfNpmOnItsOutputReadsAsUpToDate) {
    EXPECT_EQ(scanWhenNpmAnswers({.terminationStatus = 1,
                                  .stdout = R"({"error": {"code": "ECONNREFUSED"}})",
                                  .stderr = "npm error code ECONNREFUSED"}),
              npmRoot(DependencyHealth::upToDate, std::nullopt));
}

TEST_F(NodeProject_Failure, TimeOutNamesTheManager) {
    EXPECT_EQ(scanWhenNpmAnswers({.terminationStatus = 15, .stdout = "{}", .timedOut = true}),
              npmError("Timeout while checking npm dependencies"));
}

TEST_F(NodeProject_Failure, TimeOutOfAWorkspaceMemberNamesPnpm) {
    repo.write("pnpm-workspace.yaml", "");
    commands.answer("pnpm outdated", {.terminationStatus = 9, .timedOut = true});
    EXPECT_EQ(scanProject("web").message, "Timeout while checking pnpm dependencies");
}

TEST_F(NodeProject_Failure, LaunchErrorIsUnknownInItsOwnWords) {
    EXPECT_EQ(scanWhenNpmAnswers({.launchError = "Failed to launch command: No such file"}),
              npmRoot(DependencyHealth::unknown, "Failed to launch command: No such file"));
}

TEST_F(NodeProject_Failure, FailureWithoutOutputIsToldInTheWordsOfStandardError) {
    EXPECT_EQ(scanWhenNpmAnswers(failed(127, "env: 'npm': No such file or directory")),
              npmError("env: 'npm': No such file or directory"));
}

TEST_F(NodeProject_Failure, FailureWithoutAnyWordsIsToldByItsStatus) {
    EXPECT_EQ(scanWhenNpmAnswers(failed(254)), npmError("Command failed (254)"));
}

TEST_F(NodeProject_Failure, FailureWithoutAReportIsToldInTheWordsOfStandardError) {
    EXPECT_EQ(scanWhenNpmAnswers({.terminationStatus = 1, .stdout = "out", .stderr = "err"}),
              npmError("err"));
}

TEST_F(NodeProject_Failure, FailureWithoutAReportOrErrorsIsToldInTheFirst200Characters) {
    std::string characters;
    for (int count = 0; count < 250; ++count) characters += "e\u0301";
    EXPECT_EQ(scanWhenNpmAnswers(printed("\n " + characters, 1)),
              npmError(characters.substr(0, 200 * std::string("e\u0301").size())));
}

TEST_F(NodeProject_Failure, ReportThatCannotBeReadNamesTheManager) {
    for (const auto* output : {"{", "[1]", "{} trailing", "[WARN] old\n{}"}) {
        EXPECT_EQ(scanWhenNpmAnswers(printed(output)),
                  npmError("Could not parse npm outdated output"))
            << output;
    }
}

TEST_F(NodeProject_Failure, ReportThatCannotBeReadOutranksTheStatus) {
    EXPECT_EQ(scanWhenNpmAnswers({.terminationStatus = 1, .stdout = "{", .stderr = "err"}),
              npmError("Could not parse npm outdated output"));
}

TEST_F(NodeProject_Faults, ManifestInAnyStateIsLeftToTheManager) {
    commands.answer("npm outdated", printed("{}"));
    EXPECT_EQ(scanProject("missing").status, DependencyHealth::upToDate);
    repo.makeFolder("folder/package.json");
    EXPECT_EQ(scanProject("folder").status, DependencyHealth::upToDate);
    repo.write("empty/package.json", "");
    EXPECT_EQ(scanProject("empty").status, DependencyHealth::upToDate);
    repo.write("bytes/package.json", "{\"packageManager\": \"yarn@1\", \"\xFF\": 1}");
    EXPECT_EQ(scanProject("bytes").status, DependencyHealth::upToDate);
    repo.write("deep/package.json", std::string(1'000'000, '['));
    EXPECT_EQ(scanProject("deep").status, DependencyHealth::upToDate);
}

TEST_F(ScanNode, ProjectsAreCheckedOneAfterTheOtherInOrderOfTheirPaths) {
    commands.answer("npm outdated", printed("{}"));
    for (const auto* name : {"b", "a/c", "a"}) repo.makeFolder(name);
    scanNode(tools(), {.projectPaths = {repo / "b/", repo / "a/c", repo / "b/../a", repo.path()},
                       .repoPath = repo.path()});
    std::vector<std::string> folders;
    for (const Command& command : commands.commands()) folders.push_back(command.cwd);
    EXPECT_THAT(folders, ElementsAre(repo.path(), repo / "a", repo / "a/c", repo / "b"));
}

TEST_F(ScanNode, FailureOfOneProjectStaysItsOwn) {
    DependencyTools tools{.runCommand = [&](const Command& command) -> CommandResult {
        if (command.cwd == repo / "b") return {.terminationStatus = 1, .stderr = "broken"};
        return printed("{}");
    }};
    const auto results = scanNode(
        tools, {.projectPaths = {repo / "a", repo / "b", repo / "c"}, .repoPath = repo.path()});
    EXPECT_THAT(results,
                ElementsAre(Field(&DependencyEcosystemResult::status, DependencyHealth::upToDate),
                            DependencyEcosystemResult{.project = "b",
                                                      .manager = "npm",
                                                      .status = DependencyHealth::error,
                                                      .message = "broken"},
                            Field(&DependencyEcosystemResult::status, DependencyHealth::upToDate)));
}

TEST_F(ScanNode, ThreeHundredProjectsHaveThreeHundredVerdicts) {
    commands.answer("npm outdated", printed("{}"));
    ProjectPlaces places{.repoPath = repo.path()};
    for (int number = 0; number < 300; ++number) {
        places.projectPaths.push_back(repo / ("p" + std::to_string(number)));
    }
    const auto results = scanNode(tools(), places);
    EXPECT_EQ(results.size(), 300U);
    EXPECT_THAT(results,
                Each(Field(&DependencyEcosystemResult::status, DependencyHealth::upToDate)));
}

TEST_F(ScanNode, NoProjectsRunNothing) {
    EXPECT_THAT(scanNode(tools(), {.repoPath = repo.path()}), IsEmpty());
    EXPECT_THAT(commands.commands(), IsEmpty());
}

}  // namespace
}  // namespace tarnbeck::testing
