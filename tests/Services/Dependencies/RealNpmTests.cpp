#include <chrono>

#include "RealNodeFixture.h"

namespace tarnbeck::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class RealNpm : public RealNodeFixture {
  protected:
    RealNpm() : RealNodeFixture("npm") {}

    // A project at 1.0.0 of a package of which there is 1.1.0 (and 2.0.0, if asked for) by now.
    void installOldLeft(const std::string& range, const std::string& versionsNow) {
        registryHas(R"({"left": ["1.0.0"]})");
        manifest(R"({"dependencies": {"left": ")" + range + R"("}})");
        install();
        registryHas(R"({"left": )" + versionsNow + "}");
        forgetWhatManagersKeep();
    }
};

using RealNpm_Verdict = RealNpm;
using RealNpm_Faults = RealNpm;
using RealNpm_Plan = RealNpm;

TEST_F(RealNpm_Verdict, NewestOfEverythingIsUpToDate) {
    registryHas(R"({"left": ["1.0.0", "1.1.0"]})");
    manifest(R"({"dependencies": {"left": "^1.0.0"}})");
    install();
    const auto result = scan();
    EXPECT_EQ(result.manager, "npm");
    EXPECT_EQ(result.status, DependencyHealth::upToDate);
    EXPECT_EQ(result.message, std::nullopt);
}

TEST_F(RealNpm_Verdict, HeldBackByItsRangeIsAConstraint) {
    registryHas(R"({"left": ["1.0.0", "1.1.0", "2.0.0"]})");
    manifest(R"({"dependencies": {"left": "^1.0.0"}})");
    install();
    const auto result = scan();
    EXPECT_EQ(result.status, DependencyHealth::constraints);
    EXPECT_THAT(updatesInWords(result), ElementsAre("left 1.1.0 > 2.0.0 constrained"));
}

TEST_F(RealNpm_Verdict, EverythingPinnedIsHeldBackByItsPins) {
    registryHas(R"({"left": ["1.0.0", "1.0.1"], "@scope/right": ["1.0.0", "1.1.0"]})");
    manifest(
        R"({"dependencies": {"left": "1.0.0"}, "devDependencies": {"@scope/right": "1.0.0"}})");
    install();
    EXPECT_THAT(updatesInWords(scan()), ElementsAre("@scope/right 1.0.0 > 1.1.0 constrained",
                                                    "left 1.0.0 > 1.0.1 constrained"));
}

TEST_F(RealNpm_Verdict, InstallBehindItsRangeIsANeedToSync) {
    installOldLeft("^1.0.0", R"(["1.0.0", "1.1.0"])");
    const auto result = scan();
    EXPECT_EQ(result.status, DependencyHealth::syncNeeded);
    EXPECT_EQ(result.message,
              "Local install lags behind wanted versions for 1 package(s): left. Run install to "
              "sync.");
}

TEST_F(RealNpm_Verdict, InstallBehindARangeThatEndsBeforeTheLatestIsToldAsBoth) {
    installOldLeft("^1.0.0", R"(["1.0.0", "1.1.0", "2.0.0"])");
    const auto result = scan();
    EXPECT_EQ(result.status, DependencyHealth::syncNeeded);
    EXPECT_THAT(result.message.value_or(""), HasSubstr("left. Run install to sync. • 1 update(s)"));
}

TEST_F(RealNpm_Verdict, InstalledBeyondItsRangeHasAMajorUpdate) {
    registryHas(R"({"left": ["1.0.0", "2.0.0", "3.0.0"]})");
    manifest(R"({"dependencies": {"left": "2.0.0"}})");
    install();
    manifest(R"({"dependencies": {"left": "^1.0.0"}})");
    const auto result = scan();
    EXPECT_EQ(result.status, DependencyHealth::updatesAvailable);
    EXPECT_THAT(updatesInWords(result), ElementsAre("left 2.0.0 > 3.0.0 major"));
}

TEST_F(RealNpm_Verdict, LatestBehindWhatIsInstalledIsUpToDate) {
    registryHas(R"({"left": {"versions": ["1.0.0", "2.0.0"], "latest": "1.0.0"}})");
    manifest(R"({"dependencies": {"left": "2.0.0"}})");
    install();
    EXPECT_EQ(scan().status, DependencyHealth::upToDate);
}

TEST_F(RealNpm_Verdict, AliasIsNamedWithWhatItStandsFor) {
    registryHas(R"({"left": ["1.0.0", "2.0.0"]})");
    manifest(R"({"dependencies": {"other": "npm:left@^1.0.0"}})");
    install();
    EXPECT_THAT(updatesInWords(scan()), ElementsAre("other:left@^1.0.0 1.0.0 > 2.0.0 constrained"));
}

TEST_F(RealNpm_Verdict, PackageThatTheRegistryDoesNotKnowAnyMoreIsPassedOver) {
    registryHas(R"({"gone": ["1.0.0"], "left": ["1.0.0", "2.0.0"]})");
    manifest(R"({"dependencies": {"gone": "^1.0.0", "left": "^1.0.0"}})");
    install();
    registryFails(R"({"gone": "missing"})");
    forgetWhatManagersKeep();
    EXPECT_THAT(updatesInWords(scan()), ElementsAre("left 1.0.0 > 2.0.0 constrained"));
}

TEST_F(RealNpm_Verdict, NothingInstalledReadsAsUpToDate) {
    registryHas(R"({"left": ["1.0.0", "2.0.0"]})");
    manifest(R"({"dependencies": {"left": "^1.0.0"}})");
    EXPECT_EQ(scan().status, DependencyHealth::upToDate);
}

TEST_F(RealNpm_Faults, RegistryThatRefusesConnectionsReadsAsUpToDate) {
    installOldLeft("^1.0.0", R"(["1.0.0", "1.1.0"])");
    stopRegistry();
    EXPECT_EQ(scan().status, DependencyHealth::upToDate);
}

TEST_F(RealNpm_Faults, RegistryThatIsOutOfOrderReadsAsUpToDate) {
    installOldLeft("^1.0.0", R"(["1.0.0", "1.1.0"])");
    registryFails(R"({"*": "error"})");
    EXPECT_EQ(scan().status, DependencyHealth::upToDate);
}

TEST_F(RealNpm_Faults, AnswerThatBreaksOffReadsAsUpToDate) {
    installOldLeft("^1.0.0", R"(["1.0.0", "1.1.0"])");
    registryFails(R"({"*": "cut-off"})");
    EXPECT_EQ(scan().status, DependencyHealth::upToDate);
}

TEST_F(RealNpm_Faults, SilentRegistryIsATimeOut) {
    installOldLeft("^1.0.0", R"(["1.0.0", "1.1.0"])");
    registryFails(R"({"*": "silent"})");
    tools.timeouts.nodeOutdated = 2s;
    const auto result = scan();
    EXPECT_EQ(result.status, DependencyHealth::error);
    EXPECT_EQ(result.message, "Timeout while checking npm dependencies");
}

TEST_F(RealNpm_Faults, BrokenManifestReadsAsUpToDate) {
    for (const auto* broken : {"{\"dependencies\": {", "[]", "\xFF\xFE"}) {
        manifest(broken);
        EXPECT_EQ(scan().status, DependencyHealth::upToDate) << broken;
    }
}

TEST_F(RealNpm_Faults, FailureOfOneProjectStaysItsOwn) {
    registryHas(R"({"left": ["1.0.0", "2.0.0"]})");
    manifest(R"({"dependencies": {"left": "^1.0.0"}})", "good");
    install("good");
    const auto results = DependencyScanner::scanNode(
        tools, {.projectPaths = {repo / "good", repo / "absent"}, .repoPath = repo.path()});
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[0].status, DependencyHealth::unknown);
    EXPECT_EQ(results[0].message, "Failed to launch command: No such file or directory");
    EXPECT_EQ(results[1].status, DependencyHealth::constraints);
}

TEST_F(RealNpm_Plan, UpdateBringsALaggingInstallUpToDate) {
    installOldLeft("^1.0.0", R"(["1.0.0", "1.1.0"])");
    const CommandResult result = update(scan());
    EXPECT_EQ(result.terminationStatus, 0) << result.stderr;
    EXPECT_THAT(result.stdout, HasSubstr("$ npm update\n"));
    EXPECT_EQ(scan().status, DependencyHealth::upToDate);
}

TEST_F(RealNpm_Plan, UpdateLeavesWhatItsRangeHoldsBack) {
    installOldLeft("^1.0.0", R"(["1.0.0", "1.1.0", "2.0.0"])");
    EXPECT_EQ(update(scan()).terminationStatus, 0);
    EXPECT_THAT(updatesInWords(scan()), ElementsAre("left 1.1.0 > 2.0.0 constrained"));
}

TEST_F(RealNpm_Plan, UpdateOfAPackageBeyondItsRangeLeadsBackIntoTheRange) {
    registryHas(R"({"left": ["1.0.0", "2.0.0", "3.0.0"]})");
    manifest(R"({"dependencies": {"left": "2.0.0"}})");
    install();
    manifest(R"({"dependencies": {"left": "^1.0.0"}})");
    const CommandResult result = update(scan());
    EXPECT_EQ(result.terminationStatus, 0) << result.stderr;
    EXPECT_THAT(result.stdout, HasSubstr("$ npm update left\n"));
    EXPECT_THAT(updatesInWords(scan()), ElementsAre("left 1.0.0 > 3.0.0 constrained"));
}

TEST_F(RealNpm_Plan, FailureOfTheRegistryIsToldInNpmsOwnWords) {
    installOldLeft("^1.0.0", R"(["1.0.0", "1.1.0"])");
    const auto result = scan();
    registryFails(R"({"*": "error"})");
    forgetWhatManagersKeep();
    const CommandResult failure = update(result);
    EXPECT_EQ(failure.terminationStatus, 1);
    EXPECT_THAT(failure.stderr, HasSubstr("$ npm update\n"));
    EXPECT_THAT(failure.stderr, HasSubstr("out of order"));
}

}  // namespace
}  // namespace tarnbeck::testing
