#include <filesystem>

#include "DependencyInstaller.h"
#include "RecordedCommands.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyInstaller;
using ::testing::ElementsAre;

DependencyUpdate inEnvironment(const std::string& package,
                               DependencyUpdateType type = DependencyUpdateType::minor) {
    return {.ecosystem = DependencyEcosystem::python,
            .package = package,
            .currentVersion = "1.0.0",
            .latestVersion = "1.1.0",
            .updateType = type,
            .origin = DependencyUpdateOrigin::venvOnly};
}

class PythonPlanTest : public ::testing::Test {
  protected:
    PythonPlanTest() { makeExecutable(".venv/bin/python3"); }

    std::string makeExecutable(const std::string& name) const {
        const std::string path = project.write(name, "#!/bin/sh\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    Plan planFor(std::vector<DependencyUpdate> updates = {}) {
        return pythonPlan({.runCommand = commands.runner(), .uvCandidates = uvCandidates},
                          {.ecosystem = DependencyEcosystem::python,
                           .manager = "pip",
                           .updates = std::move(updates)},
                          {.projectPath = project.path(), .repoPath = project.path()});
    }
    DependencyInstallPlan planOf(std::vector<DependencyUpdate> updates = {}) {
        const Plan plan = planFor(std::move(updates));
        const auto* steps = std::get_if<DependencyInstallPlan>(&plan);
        EXPECT_NE(steps, nullptr);
        return steps ? *steps : DependencyInstallPlan{};
    }
    // What is asked for behind "python -m pip install".
    std::vector<std::string> installsOf(std::vector<DependencyUpdate> updates = {}) {
        std::vector<std::string> installs;
        for (const auto& step : planOf(std::move(updates)).steps) {
            const std::string lead = python + " -m pip install ";
            EXPECT_EQ(step.displayCommand.substr(0, lead.size()), lead);
            installs.push_back(step.displayCommand.substr(lead.size()));
        }
        return installs;
    }

    TemporaryFolder project;
    RecordedCommands commands;
    std::vector<std::string> uvCandidates;
    const std::string python = project / ".venv/bin/python3";
};

using PythonPlan_Manifests = PythonPlanTest;
using PythonPlan_Packages = PythonPlanTest;
using PythonPlan_Tools = PythonPlanTest;
using PythonPlan_Errors = PythonPlanTest;

TEST_F(PythonPlan_Manifests, EachRequirementFileIsInstalledInOrder) {
    for (const auto* name :
         {"requirements-housekeeping.txt", "requirements.txt", "requirements-dev.txt"}) {
        project.write(name, "");
    }
    EXPECT_THAT(installsOf(), ElementsAre("-r requirements.txt", "-r requirements-dev.txt",
                                          "-r requirements-housekeeping.txt"));
    EXPECT_EQ(planOf().summary, "Sync Python dependencies");
}

TEST_F(PythonPlan_Manifests, RequirementsLeaveOutTheEditableInstall) {
    project.write("requirements.txt", "");
    project.write("requirements-dev.txt", "");
    project.write("pyproject.toml", "");
    EXPECT_THAT(installsOf(), ElementsAre("-r requirements.txt", "-r requirements-dev.txt"));
}

TEST_F(PythonPlan_Manifests, ProjectFileAloneIsOneEditableInstall) {
    project.write("pyproject.toml", "");
    EXPECT_THAT(installsOf(), ElementsAre("-e ."));
}

TEST_F(PythonPlan_Manifests, OtherRequirementFilesDoNotCount) {
    project.write("requirements-test.txt", "");
    project.write("pyproject.toml", "");
    EXPECT_THAT(installsOf(), ElementsAre("-e ."));
}

TEST_F(PythonPlan_Packages, OneOfTheEnvironmentAloneIsUpgradedLast) {
    project.write("requirements.txt", "");
    EXPECT_THAT(installsOf({inEnvironment("a")}),
                ElementsAre("-r requirements.txt", "--upgrade a"));
    EXPECT_EQ(planOf({inEnvironment("a")}).summary,
              "Sync Python dependencies + upgrade 1 venv package");
}

TEST_F(PythonPlan_Packages, TwoAreCountedInThePluralAndSorted) {
    EXPECT_THAT(installsOf({inEnvironment("b"), inEnvironment("a")}), ElementsAre("--upgrade a b"));
    EXPECT_EQ(planOf({inEnvironment("b"), inEnvironment("a")}).summary,
              "Sync Python dependencies + upgrade 2 venv packages");
}

TEST_F(PythonPlan_Packages, OneThatIsToldTwiceStaysSo) {
    EXPECT_THAT(installsOf({inEnvironment("b"), inEnvironment("a"), inEnvironment("b")}),
                ElementsAre("--upgrade a b b"));
}

TEST_F(PythonPlan_Packages, UpgradeAloneIsAPlan) {
    EXPECT_EQ(planOf({inEnvironment("a")}).steps.size(), 1U);
}

TEST_F(PythonPlan_Packages, ConstrainedAndBlockedOnesAreNeverNamed) {
    EXPECT_THAT(
        installsOf({inEnvironment("held", DependencyUpdateType::constrained), inEnvironment("free"),
                    inEnvironment("stopped", DependencyUpdateType::blocked)}),
        ElementsAre("--upgrade free"));
}

TEST_F(PythonPlan_Packages, ThoseOfTheManifestAreNotNamed) {
    project.write("requirements.txt", "");
    for (const auto origin :
         {DependencyUpdateOrigin::manifestDirect, DependencyUpdateOrigin::manifestTransitive,
          DependencyUpdateOrigin::unknown}) {
        DependencyUpdate update = inEnvironment("a");
        update.origin = origin;
        EXPECT_THAT(installsOf({update}), ElementsAre("-r requirements.txt"));
    }
}

TEST_F(PythonPlan_Tools, InterpreterRunsItsPipInTheProject) {
    project.write("requirements.txt", "");
    EXPECT_THAT(
        planOf({inEnvironment("a")}).steps,
        ElementsAre(
            DependencyInstallStep{.executable = python,
                                  .args = {"-m", "pip", "install", "-r", "requirements.txt"},
                                  .cwd = project.path(),
                                  .displayCommand = python + " -m pip install -r requirements.txt"},
            DependencyInstallStep{.executable = python,
                                  .args = {"-m", "pip", "install", "--upgrade", "a"},
                                  .cwd = project.path(),
                                  .displayCommand = python + " -m pip install --upgrade a"}));
}

TEST_F(PythonPlan_Tools, UvIsPreferredAndToldOfTheInterpreter) {
    const std::string uv = makeExecutable("tools/uv");
    uvCandidates = {uv};
    project.write("pyproject.toml", "");
    EXPECT_THAT(
        planOf({inEnvironment("a")}).steps,
        ElementsAre(
            DependencyInstallStep{
                .executable = uv,
                .args = {"pip", "install", "--python", python, "-e", "."},
                .cwd = project.path(),
                .displayCommand = uv + " pip install --python " + python + " -e ."},
            DependencyInstallStep{
                .executable = uv,
                .args = {"pip", "install", "--python", python, "--upgrade", "a"},
                .cwd = project.path(),
                .displayCommand = uv + " pip install --python " + python + " --upgrade a"}));
}

TEST_F(PythonPlan_Tools, UvInstallsRequirementsToo) {
    uvCandidates = {makeExecutable("tools/uv")};
    project.write("requirements.txt", "");
    EXPECT_THAT(planOf().steps[0].args,
                ElementsAre("pip", "install", "--python", python, "-r", "requirements.txt"));
}

TEST_F(PythonPlan_Packages, NameThatPipWouldReadAsAnOptionIsNotNamed) {
    EXPECT_THAT(installsOf({inEnvironment("--index-url=elsewhere"), inEnvironment("a")}),
                ElementsAre("--upgrade a"));
}

TEST_F(PythonPlan_Errors, WithoutAnEnvironmentThereIsNoPlanEvenWithRequirements) {
    std::filesystem::remove_all(project / ".venv");
    project.write("requirements.txt", "");
    EXPECT_EQ(planFor({inEnvironment("a")}),
              Plan(PlanError{PlanError::MissingPythonEnvironment{}}));
}

TEST_F(PythonPlan_Errors, WithoutManifestsAndPackagesThereIsNoPlan) {
    EXPECT_EQ(planFor(), Plan(PlanError{PlanError::NoInstallRecipe{}}));
}

}  // namespace
}  // namespace tarnbeck::testing
