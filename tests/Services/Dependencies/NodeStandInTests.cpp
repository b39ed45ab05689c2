#include <chrono>

#include <fmt/format.h>

#include "DependencyInstaller.h"
#include "DependencyScanner+Node.h"
#include "StandInFixture.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;

class NodeStandIn : public StandInFixture {
  protected:
    DependencyEcosystemResult scan() {
        return DependencyScanner::scanNodeProject(
            tools, {.projectPath = project.path(), .repoPath = project.path()});
    }
};

using NodeChild = NodeStandIn;
using ExpoChild = NodeStandIn;
using InstallChild = NodeStandIn;

constexpr const char* reportOfP =
    R"({"p": {"current": "1.0.0", "wanted": "0.9.0", "latest": "2.0.0"}})";

TEST_F(NodeChild, MissingManagerIsAnErrorInTheSystemsWords) {
    const auto result = scan();
    EXPECT_EQ(result.status, DependencyHealth::error);
    EXPECT_THAT(result.message.value_or(""), HasSubstr("npm"));
    EXPECT_THAT(result.message.value_or(""), HasSubstr("No such file or directory"));
}

TEST_F(NodeChild, WarningsBeforeTheReportAreSkipped) {
    standIn("npm", fmt::format("echo 'npm warn old'; echo; echo '   {}'; exit 1", reportOfP));
    EXPECT_EQ(scan().status, DependencyHealth::updatesAvailable);
}

TEST_F(NodeChild, BrokenReportNamesTheManager) {
    standIn("npm", R"(printf '{"p": {"current"')");
    EXPECT_EQ(scan().message, "Could not parse npm outdated output");
}

TEST_F(NodeChild, ReportThatIsNotUtf8ReadsAsNoOutput) {
    standIn("npm", R"(printf '{"\377": {}}'; exit 1)");
    EXPECT_EQ(scan().message, "Command failed (1)");
}

TEST_F(NodeChild, HangingManagerIsEndedAtTheTimeOut) {
    standIn("npm", fmt::format("exec '{}' hang", BAD_CHILD));
    tools.timeouts.nodeOutdated = 200ms;
    EXPECT_EQ(scan().message, "Timeout while checking npm dependencies");
}

TEST_F(NodeChild, MissingProjectFolderIsUnknownInTheSystemsWords) {
    const auto result = DependencyScanner::scanNodeProject(
        tools, {.projectPath = "/nonexistent", .repoPath = "/nonexistent"});
    EXPECT_EQ(result.status, DependencyHealth::unknown);
    EXPECT_EQ(result.message, "Failed to launch command: No such file or directory");
}

TEST_F(ExpoChild, FindingsOnStandardErrorBlockAnUpdate) {
    project.write("package.json", R"({"dependencies": {"expo": "~52.0.0"}})");
    standIn("npm", fmt::format("echo '{}'; exit 1", reportOfP));
    standIn("npx", "echo \"$@\" > called\necho '  p@1.0.0 - expected version: ~1.9.0' >&2; exit 1");
    const auto result = scan();
    EXPECT_THAT(result.updates,
                ElementsAre(Field(&DependencyUpdate::updateType, DependencyUpdateType::blocked)));
    EXPECT_EQ(result.message,
              "1 update(s) blocked by Expo SDK compatibility: p@2.0.0 blocked: Expo SDK expects "
              "~1.9.0");
    EXPECT_EQ(contentOf(project / "called"), "expo install --check --npm\n");
}

TEST_F(ExpoChild, MissingToolChangesNothing) {
    project.write("package.json", R"({"dependencies": {"expo": "~52.0.0"}})");
    standIn("npm", fmt::format("echo '{}'; exit 1", reportOfP));
    EXPECT_EQ(scan().status, DependencyHealth::updatesAvailable);
}

TEST_F(ExpoChild, HangingToolIsEndedAtItsTimeOutAndChangesNothing) {
    project.write("package.json", R"({"dependencies": {"expo": "~52.0.0"}})");
    standIn("npm", fmt::format("echo '{}'; exit 1", reportOfP));
    standIn("npx", fmt::format("exec '{}' hang", BAD_CHILD));
    tools.timeouts.expoCheck = 200ms;
    EXPECT_EQ(scan().status, DependencyHealth::updatesAvailable);
}

TEST_F(InstallChild, NamesReachTheManagerAsSingleArgumentsThatNoShellReads) {
    standIn("npm", R"(for argument; do printf '[%s]' "$argument"; done)");
    const DependencyEcosystemResult result{
        .project = ".",
        .manager = "npm",
        .updates = {DependencyUpdate{.package = "a b"}, DependencyUpdate{.package = "$(exit 3)"},
                    DependencyUpdate{.package = "it's; \"quoted\""}}};
    const auto plan = DependencyInstaller::nodePlan(
        result, {.projectPath = project.path(), .repoPath = project.path()});
    const CommandResult done = DependencyInstaller::run(
        tools, {.plan = std::get<DependencyInstallPlan>(plan), .timeoutPerStep = 30s});
    EXPECT_EQ(done.stdout,
              "$ npm update $(exit 3) a b it's; \"quoted\"\n"
              "[update][$(exit 3)][a b][it's; \"quoted\"]");
}

TEST_F(InstallChild, ExpoIsAlignedBeforeTheUpdate) {
    project.write("package.json", R"({"dependencies": {"expo": "~52.0.0"}})");
    standIn("npx", "echo \"npx $@\" >> called");
    standIn("npm", "echo \"npm $@\" >> called");
    const auto plan = DependencyInstaller::nodePlan(
        {.project = ".", .manager = "npm", .updates = {DependencyUpdate{.package = "a"}}},
        {.projectPath = project.path(), .repoPath = project.path()});
    DependencyInstaller::run(
        tools, {.plan = std::get<DependencyInstallPlan>(plan), .timeoutPerStep = 30s});
    EXPECT_EQ(contentOf(project / "called"), "npx expo install --fix --npm\nnpm update a\n");
}

}  // namespace
}  // namespace tarnbeck::testing
