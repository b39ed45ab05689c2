#include <chrono>

#include "DependencyScanner+Discovery.h"
#include "RealNodeFixture.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class RealPnpm : public RealNodeFixture {
  protected:
    RealPnpm() : RealNodeFixture("pnpm") {}

    // A project by itself. `pnpm-lock.yaml` tells from the first check on whose it is.
    void installed(const std::string& dependencies) {
        manifest(R"({"dependencies": )" + dependencies + "}");
        install();
    }

    // Members in packages and apps, without packages/skipped.
    void makeWorkspace() {
        registryHas(R"({"left": ["1.0.0", "1.1.0", "2.0.0"], "@scope/right": ["1.0.0", "1.0.1"]})");
        repo.write("pnpm-workspace.yaml",
                   "packages:\n  - \"packages/*\"\n  - apps/*\n  - '!packages/skipped'\n");
        manifest(R"({"name": "root"})");
        manifest(R"({"name": "x", "dependencies": {"left": "^1.0.0", "y": "workspace:*"}})",
                 "packages/x");
        manifest(R"({"name": "y", "dependencies": {"@scope/right": "1.0.0"}})", "packages/y");
        manifest(R"({"name": "skipped", "dependencies": {"left": "1.0.0"}})", "packages/skipped");
        manifest(R"({"name": "web", "dependencies": {"left": "2.0.0"}})", "apps/web");
        install();
    }
};

using RealPnpm_Verdict = RealPnpm;
using RealPnpm_Workspace = RealPnpm;
using RealPnpm_Faults = RealPnpm;
using RealPnpm_Plan = RealPnpm;

TEST_F(RealPnpm_Verdict, NewestOfEverythingIsUpToDate) {
    registryHas(R"({"left": ["1.0.0", "1.1.0"]})");
    installed(R"({"left": "^1.0.0"})");
    const auto result = scan();
    EXPECT_EQ(result.manager, "pnpm");
    EXPECT_EQ(result.status, DependencyHealth::upToDate);
}

TEST_F(RealPnpm_Verdict, HeldBackByItsRangeIsAConstraint) {
    registryHas(R"({"left": ["1.0.0", "1.1.0", "2.0.0"], "@scope/right": ["1.0.0", "1.0.1"]})");
    installed(R"({"left": "^1.0.0", "@scope/right": "1.0.0"})");
    const auto result = scan();
    EXPECT_EQ(result.status, DependencyHealth::constraints);
    EXPECT_THAT(updatesInWords(result), ElementsAre("@scope/right 1.0.0 > 1.0.1 constrained",
                                                    "left 1.1.0 > 2.0.0 constrained"));
}

TEST_F(RealPnpm_Verdict, UpdateWithinTheRangeReadsAsHeldBackByTheLockfile) {
    registryHas(R"({"left": ["1.0.0"]})");
    installed(R"({"left": "^1.0.0"})");
    registryHas(R"({"left": ["1.0.0", "1.1.0"]})");
    forgetWhatManagersKeep();
    EXPECT_THAT(updatesInWords(scan()), ElementsAre("left 1.0.0 > 1.1.0 constrained"));
}

TEST_F(RealPnpm_Verdict, AliasIsNamedByWhatItStandsFor) {
    registryHas(R"({"left": ["1.0.0", "2.0.0"]})");
    installed(R"({"other": "npm:left@^1.0.0"})");
    EXPECT_THAT(updatesInWords(scan()), ElementsAre("left 1.0.0 > 2.0.0 constrained"));
}

TEST_F(RealPnpm_Verdict, NothingInstalledIsNeverUpToDate) {
    registryHas(R"({"left": ["1.0.0", "2.0.0"]})");
    manifest(R"({"packageManager": "pnpm@*", "dependencies": {"left": "^1.0.0"}})");
    // Some versions read the installed version off the range, others fail.
    EXPECT_THAT(scan().status, AnyOf(DependencyHealth::constraints, DependencyHealth::error));
}

TEST_F(RealPnpm_Workspace, MembersAreCheckedEachByItselfAndWhatPatternsNegateIsNot) {
    makeWorkspace();
    const auto markers = DependencyScanner::discoverMarkers(repo.path());
    std::vector<std::string> told;
    for (const auto& result : DependencyScanner::scanNode(
             tools, {.projectPaths = markers.nodeProjects, .repoPath = repo.path()})) {
        told.push_back(result.project.value_or("") + " by " + result.manager);
        for (const std::string& update : updatesInWords(result)) told.push_back(update);
    }
    EXPECT_THAT(told, ElementsAre(". by pnpm", "apps/web by pnpm", "packages/x by pnpm",
                                  "left 1.1.0 > 2.0.0 constrained", "packages/y by pnpm",
                                  "@scope/right 1.0.0 > 1.0.1 constrained"));
}

TEST_F(RealPnpm_Workspace, MemberWithAStaleLockfileOfItsOwnIsStillPnpms) {
    makeWorkspace();
    repo.write("packages/x/package-lock.json", R"({"lockfileVersion": 3, "packages": {}})");
    repo.write("packages/y/yarn.lock", "");
    EXPECT_EQ(scan("packages/x").manager, "pnpm");
    EXPECT_THAT(updatesInWords(scan("packages/x")), ElementsAre("left 1.1.0 > 2.0.0 constrained"));
    EXPECT_THAT(updatesInWords(scan("packages/y")),
                ElementsAre("@scope/right 1.0.0 > 1.0.1 constrained"));
}

TEST_F(RealPnpm_Workspace, FolderThatIsNoMemberReadsAsUpToDate) {
    makeWorkspace();
    EXPECT_EQ(scan("packages/skipped").status, DependencyHealth::upToDate);
}

TEST_F(RealPnpm_Faults, OnePackageThatTheRegistryDoesNotKnowFailsTheWholeCheck) {
    registryHas(R"({"gone": ["1.0.0"], "left": ["1.0.0", "2.0.0"]})");
    installed(R"({"gone": "^1.0.0", "left": "^1.0.0"})");
    registryFails(R"({"gone": "missing"})");
    forgetWhatManagersKeep();
    const auto result = scan();
    EXPECT_EQ(result.status, DependencyHealth::error);
    EXPECT_THAT(result.message.value_or(""), HasSubstr("404"));
}

TEST_F(RealPnpm_Faults, RegistryThatRefusesConnectionsIsAnErrorInPnpmsOwnWords) {
    registryHas(R"({"left": ["1.0.0", "2.0.0"]})");
    installed(R"({"left": "^1.0.0"})");
    stopRegistry();
    forgetWhatManagersKeep();
    const auto result = scan();
    EXPECT_EQ(result.status, DependencyHealth::error);
    EXPECT_THAT(result.message.value_or(""), HasSubstr("127.0.0.1"));
}

TEST_F(RealPnpm_Faults, RegistryThatIsOutOfOrderOrBreaksOffIsAnError) {
    registryHas(R"({"left": ["1.0.0", "2.0.0"]})");
    installed(R"({"left": "^1.0.0"})");
    for (const auto* fault : {"error", "cut-off"}) {
        registryFails(R"({"*": ")" + std::string(fault) + R"("})");
        forgetWhatManagersKeep();
        EXPECT_EQ(scan().status, DependencyHealth::error) << fault;
    }
}

TEST_F(RealPnpm_Faults, SilentRegistryIsATimeOut) {
    registryHas(R"({"left": ["1.0.0", "2.0.0"]})");
    installed(R"({"left": "^1.0.0"})");
    registryFails(R"({"*": "silent"})");
    forgetWhatManagersKeep();
    tools.timeouts.nodeOutdated = 1s;
    EXPECT_EQ(scan().message, "Timeout while checking pnpm dependencies");
}

TEST_F(RealPnpm_Faults, BrokenManifestIsAnErrorInPnpmsOwnWords) {
    repo.write("pnpm-lock.yaml", "");
    manifest("{\"dependencies\": {");
    const auto result = scan();
    EXPECT_EQ(result.status, DependencyHealth::error);
    EXPECT_THAT(result.message.value_or(""), Not(IsEmpty()));
}

TEST_F(RealPnpm_Plan, InstallAndUpdateOfAMemberBringItToTheNewestOfItsRange) {
    makeWorkspace();
    registryHas(R"({"left": ["1.0.0", "1.1.0", "1.2.0", "2.0.0"], "@scope/right": ["1.0.0"]})");
    forgetWhatManagersKeep();
    const CommandResult result = update(scan("packages/x"));
    EXPECT_EQ(result.terminationStatus, 0) << result.stdout << result.stderr;
    EXPECT_THAT(result.stdout, HasSubstr("$ pnpm install\n"));
    EXPECT_THAT(result.stdout, HasSubstr("\n\n$ pnpm update --filter ./packages/x...\n"));
    EXPECT_THAT(updatesInWords(scan("packages/x")), ElementsAre("left 1.2.0 > 2.0.0 constrained"));
}

TEST_F(RealPnpm_Plan, RootIsBroughtUpToDate) {
    registryHas(R"({"left": ["1.0.0"]})");
    installed(R"({"left": "^1.0.0"})");
    registryHas(R"({"left": ["1.0.0", "1.1.0"]})");
    forgetWhatManagersKeep();
    EXPECT_EQ(update(scan()).terminationStatus, 0);
    EXPECT_EQ(scan().status, DependencyHealth::upToDate);
}

TEST_F(RealPnpm_Plan, NamedPackageIsUpdatedAndTheOthersStay) {
    registryHas(R"({"left": ["1.0.0"], "right": ["1.0.0"]})");
    installed(R"({"left": "^1.0.0", "right": "^1.0.0"})");
    registryHas(R"({"left": ["1.0.0", "1.1.0"], "right": ["1.0.0", "1.1.0"]})");
    forgetWhatManagersKeep();
    const DependencyUpdate left{
        .package = "left", .currentVersion = "1.0.0", .latestVersion = "1.1.0"};
    EXPECT_EQ(update({.project = ".", .manager = "pnpm", .updates = {left}}).terminationStatus, 0);
    EXPECT_THAT(updatesInWords(scan()), ElementsAre("right 1.0.0 > 1.1.0 constrained"));
}

TEST_F(RealPnpm_Plan, FailedInstallIsNotFollowedByAnUpdate) {
    registryHas(R"({"left": ["1.0.0"]})");
    installed(R"({"left": "^1.0.0"})");
    const auto result = scan();
    manifest("{\"dependencies\": {");
    const CommandResult failure = update(result);
    EXPECT_NE(failure.terminationStatus, 0);
    EXPECT_THAT(failure.stdout + failure.stderr, HasSubstr("$ pnpm install\n"));
    EXPECT_THAT(failure.stdout + failure.stderr, Not(HasSubstr("$ pnpm update")));
}

}  // namespace
}  // namespace tarnbeck::testing
