#include "DependencyInstaller.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyInstaller;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;

DependencyUpdate planned(const std::string& package,
                         DependencyUpdateType type = DependencyUpdateType::minor) {
    return {.package = package,
            .currentVersion = "1.0.0",
            .latestVersion = "1.1.0",
            .updateType = type};
}

class NodePlanTest : public ::testing::Test {
  protected:
    Plan planFor(const DependencyEcosystemResult& result) const {
        return nodePlan(result, {.projectPath = absoluteProjectPath(result.project, repo.path()),
                                 .repoPath = repo.path()});
    }
    DependencyInstallPlan planOf(const DependencyEcosystemResult& result) const {
        const Plan plan = planFor(result);
        const auto* steps = std::get_if<DependencyInstallPlan>(&plan);
        EXPECT_NE(steps, nullptr);
        return steps ? *steps : DependencyInstallPlan{};
    }
    // "pnpm update a b, in web"
    std::vector<std::string> stepsOf(const DependencyEcosystemResult& result) const {
        std::vector<std::string> told;
        for (const auto& step : planOf(result).steps) {
            const bool isRoot = step.cwd == repo.path();
            told.push_back(step.displayCommand + ", in " +
                           (isRoot ? "the root" : step.cwd.substr(repo.path().size() + 1)));
        }
        return told;
    }
    void declareExpo(const std::string& folder, const std::string& section = "dependencies") const {
        repo.write(folder + "/package.json", R"({")" + section + R"(": {"expo": "52"}})");
    }
    void makePnpmWorkspace() const { repo.write("pnpm-workspace.yaml", ""); }

    TemporaryFolder repo;
};

using NodePlan_Pnpm = NodePlanTest;
using NodePlan_Npm = NodePlanTest;
using NodePlan_Others = NodePlanTest;
using NodePlan_Packages = NodePlanTest;
using NodePlan_Errors = NodePlanTest;

TEST_F(NodePlan_Pnpm, MemberIsInstalledAndUpdatedFromTheRoot) {
    const DependencyEcosystemResult result{
        .project = "packages/x", .manager = "pnpm", .updates = {planned("a"), planned("b")}};
    EXPECT_THAT(stepsOf(result),
                ElementsAre("pnpm install, in the root",
                            "pnpm update --filter ./packages/x... a b, in the root"));
    EXPECT_EQ(planOf(result).summary, "Update Node dependencies (pnpm, packages/x)");
}

TEST_F(NodePlan_Pnpm, FilterIsOneArgument) {
    EXPECT_THAT(planOf({.project = "my web", .manager = "pnpm"}).steps.back().args,
                ElementsAre("pnpm", "update", "--filter", "./my web..."));
}

TEST_F(NodePlan_Pnpm, RootIsUpdatedWithoutAFilter) {
    const DependencyEcosystemResult result{
        .project = ".", .manager = "pnpm", .updates = {planned("a")}};
    EXPECT_THAT(stepsOf(result),
                ElementsAre("pnpm install, in the root", "pnpm update a, in the root"));
    EXPECT_EQ(planOf(result).summary, "Update Node dependencies (pnpm, root)");
}

TEST_F(NodePlan_Pnpm, WithoutPackagesAllWithinTheirRangesAreUpdated) {
    EXPECT_THAT(stepsOf({.project = ".", .manager = "pnpm"}),
                ElementsAre("pnpm install, in the root", "pnpm update, in the root"));
}

TEST_F(NodePlan_Pnpm, MemberOfAWorkspaceIsPnpmsWhateverItsManager) {
    makePnpmWorkspace();
    for (const auto* manager : {"npm", "yarn", "bun", "pip"}) {
        EXPECT_THAT(
            stepsOf({.project = "web", .manager = manager}),
            ElementsAre("pnpm install, in the root", "pnpm update --filter ./web..., in the root"));
    }
}

TEST_F(NodePlan_Pnpm, RootOfAWorkspaceKeepsItsManager) {
    makePnpmWorkspace();
    EXPECT_THAT(stepsOf({.project = ".", .manager = "npm"}),
                ElementsAre("npm update, in the root"));
}

TEST_F(NodePlan_Pnpm, ExpoAsAPeerWithUpdatesHasThreeSteps) {
    makePnpmWorkspace();
    declareExpo("app", "peerDependencies");
    const DependencyEcosystemResult result{
        .project = "app", .manager = "npm", .updates = {planned("a")}};
    EXPECT_THAT(stepsOf(result),
                ElementsAre("pnpm install, in the root", "npx expo install --fix --pnpm, in app",
                            "pnpm update --filter ./app... a, in the root"));
    EXPECT_EQ(planOf(result).summary, "Align Expo-compatible Node dependencies (pnpm, app)");
}

TEST_F(NodePlan_Pnpm, ExpoWithoutUpdatesHasTwoSteps) {
    makePnpmWorkspace();
    declareExpo("app", "peerDependencies");
    EXPECT_THAT(stepsOf({.project = "app", .manager = "pnpm"}),
                ElementsAre("pnpm install, in the root", "npx expo install --fix --pnpm, in app"));
}

TEST_F(NodePlan_Pnpm, ExpoInTheRootIsToldAsADot) {
    declareExpo(".");
    const DependencyEcosystemResult result{
        .project = ".", .manager = "pnpm", .updates = {planned("a")}};
    EXPECT_EQ(planOf(result).summary, "Align Expo-compatible Node dependencies (pnpm, .)");
    EXPECT_THAT(stepsOf(result), ElementsAre("pnpm install, in the root",
                                             "npx expo install --fix --pnpm, in the root",
                                             "pnpm update a, in the root"));
}

TEST_F(NodePlan_Npm, ProjectIsUpdatedInItsFolder) {
    const DependencyEcosystemResult result{
        .project = "web", .manager = "npm", .updates = {planned("b"), planned("a")}};
    EXPECT_THAT(stepsOf(result), ElementsAre("npm update a b, in web"));
    EXPECT_EQ(planOf(result).summary, "Update Node dependencies (npm, web)");
}

TEST_F(NodePlan_Npm, WithoutActionableUpdatesItIsOneStepWithoutNames) {
    EXPECT_THAT(stepsOf({.project = ".", .manager = "npm"}),
                ElementsAre("npm update, in the root"));
}

TEST_F(NodePlan_Npm, ExpoIsAlignedFirst) {
    declareExpo("app", "devDependencies");
    const DependencyEcosystemResult result{
        .project = "app", .manager = "npm", .updates = {planned("a")}};
    EXPECT_THAT(stepsOf(result),
                ElementsAre("npx expo install --fix --npm, in app", "npm update a, in app"));
    EXPECT_EQ(planOf(result).summary, "Align Expo-compatible Node dependencies (npm, app)");
}

TEST_F(NodePlan_Npm, ExpoWithoutUpdatesIsOnlyAligned) {
    declareExpo(".");
    const DependencyEcosystemResult result{.project = ".", .manager = "npm"};
    EXPECT_THAT(stepsOf(result), ElementsAre("npx expo install --fix --npm, in the root"));
    EXPECT_EQ(planOf(result).summary, "Align Expo-compatible Node dependencies (npm, .)");
}

TEST_F(NodePlan_Npm, ResultWithoutAProjectIsTheRoots) {
    EXPECT_EQ(planOf({.manager = "npm"}).summary, "Update Node dependencies (npm, .)");
}

TEST_F(NodePlan_Others, YarnUpgradesAllInItsFolder) {
    const DependencyEcosystemResult result{
        .project = "web", .manager = "yarn", .updates = {planned("a")}};
    EXPECT_THAT(stepsOf(result), ElementsAre("yarn upgrade, in web"));
    EXPECT_EQ(planOf(result).summary, "Update Node dependencies (yarn, web)");
}

TEST_F(NodePlan_Others, BunUpdatesAllInItsFolder) {
    declareExpo("web");
    const DependencyEcosystemResult result{.project = "web", .manager = "bun"};
    EXPECT_THAT(stepsOf(result), ElementsAre("bun update, in web"));
    EXPECT_EQ(planOf(result).summary, "Update Node dependencies (bun, web)");
}

TEST_F(NodePlan_Packages, ConstrainedAndBlockedOnesAreNeverNamed) {
    EXPECT_THAT(stepsOf({.project = ".",
                         .manager = "npm",
                         .updates = {planned("held", DependencyUpdateType::constrained),
                                     planned("free", DependencyUpdateType::unknown),
                                     planned("expo", DependencyUpdateType::blocked)}}),
                ElementsAre("npm update free, in the root"));
}

TEST_F(NodePlan_Pnpm, PeerOfExpoInTheRootGivesThreeStepsWithUpdatesAndTwoWithout) {
    repo.write("package.json", R"({"peerDependencies": {"expo": "52"}})");
    EXPECT_THAT(
        stepsOf({.project = ".", .manager = "pnpm", .updates = {planned("a")}}),
        ElementsAre("pnpm install, in the root", "npx expo install --fix --pnpm, in the root",
                    "pnpm update a, in the root"));
    EXPECT_THAT(
        stepsOf({.project = ".", .manager = "pnpm"}),
        ElementsAre("pnpm install, in the root", "npx expo install --fix --pnpm, in the root"));
}

TEST_F(NodePlan_Packages, AreSortedByBytesAndEachNamedOnce) {
    EXPECT_THAT(planOf({.project = ".",
                        .manager = "npm",
                        .updates = {planned("b"), planned("@s/p"), planned("B"), planned("b")}})
                    .steps[0]
                    .args,
                ElementsAre("npm", "update", "@s/p", "B", "b"));
}

TEST_F(NodePlan_Packages, EachNameIsOneArgumentWhateverItHolds) {
    EXPECT_THAT(planOf({.project = ".",
                        .manager = "npm",
                        .updates = {planned("a b; rm -rf /"), planned("it's \"quoted\"")}})
                    .steps[0]
                    .args,
                ElementsAre("npm", "update", "a b; rm -rf /", "it's \"quoted\""));
}

TEST_F(NodePlan_Packages, NameThatAManagerWouldReadAsAnOptionIsNotNamed) {
    for (const auto* manager : {"npm", "pnpm"}) {
        EXPECT_THAT(planOf({.project = ".",
                            .manager = manager,
                            .updates = {planned("--global"), planned("left"), planned("-g")}})
                        .steps.back()
                        .args,
                    ElementsAre(manager, "update", "left"));
    }
}

TEST_F(NodePlan_Packages, EveryStepRunsThroughEnvWhichIsNotShown) {
    const auto plan = planOf({.project = "web", .manager = "pnpm"});
    EXPECT_THAT(plan.steps, Each(Field(&DependencyInstallStep::executable, "/usr/bin/env")));
    EXPECT_EQ(plan.steps[0].displayCommand, "pnpm install");
    EXPECT_THAT(plan.steps[0].args, ElementsAre("pnpm", "install"));
}

TEST_F(NodePlan_Errors, UnknownManagerHasNoPlan) {
    const Plan plan = planFor({.project = ".", .manager = "pip"});
    ASSERT_TRUE(std::holds_alternative<PlanError>(plan));
    EXPECT_EQ(std::get<PlanError>(plan), (PlanError{PlanError::UnsupportedManager{"pip"}}));
    EXPECT_EQ(std::get<PlanError>(plan).errorDescription(),
              "No install action is available for manager 'pip'.");
}

TEST(PlanErrors, MissingEnvironmentIsDescribed) {
    EXPECT_EQ(PlanError{PlanError::MissingPythonEnvironment{}}.errorDescription(),
              "No local Python virtualenv found (.venv/ or venv/).");
}

TEST(PlanErrors, MissingRecipeIsDescribed) {
    EXPECT_EQ(PlanError{PlanError::NoInstallRecipe{}}.errorDescription(),
              "No install recipe found (requirements or pyproject).");
}

TEST(AbsoluteProjectPath, NoProjectEmptyAndDotAreTheRepository) {
    EXPECT_EQ(absoluteProjectPath(std::nullopt, "/repo"), "/repo");
    EXPECT_EQ(absoluteProjectPath("", "/repo"), "/repo");
    EXPECT_EQ(absoluteProjectPath(".", "/repo"), "/repo");
}

TEST(AbsoluteProjectPath, ProjectIsAppendedWithOneSlash) {
    EXPECT_EQ(absoluteProjectPath("apps/web", "/repo"), "/repo/apps/web");
    EXPECT_EQ(absoluteProjectPath("web", "/repo/"), "/repo/web");
    EXPECT_EQ(absoluteProjectPath("/web", "/repo"), "/repo/web");
}

TEST(IsInsidePnpmWorkspace, EitherFileInTheRootTells) {
    const TemporaryFolder repo;
    repo.write("sub/pnpm-lock.yaml", "");
    EXPECT_FALSE(isInsidePnpmWorkspace(repo.path()));
    EXPECT_TRUE(isInsidePnpmWorkspace(repo / "sub"));
    repo.write("pnpm-workspace.yaml", "");
    EXPECT_TRUE(isInsidePnpmWorkspace(repo.path()));
}

TEST(InstallPlan_Record, EqualPlansHaveEqualHashesAndOthersDiffer) {
    const DependencyInstallPlan plan{.summary = "s", .steps = {{.executable = "e", .args = {"a"}}}};
    DependencyInstallPlan other = plan;
    EXPECT_EQ(hashValue(plan), hashValue(other));
    other.steps[0].args[0] = "b";
    EXPECT_NE(plan, other);
    EXPECT_NE(hashValue(plan), hashValue(other));
}

}  // namespace
}  // namespace tarnbeck::testing
