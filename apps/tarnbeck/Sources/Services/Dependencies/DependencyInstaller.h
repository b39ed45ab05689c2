// From a verdict on a project to the commands that bring it up to date, and their execution.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <variant>
#include <vector>

#include "DependencyMarkers.h"
#include "DependencyStatus.h"
#include "DependencyTools.h"
#include "Record.h"

namespace tarnbeck {

struct DependencyInstallStep {
    std::string executable;
    std::vector<std::string> args;
    std::string cwd;
    std::string displayCommand;  // what a person reads

    bool operator==(const DependencyInstallStep&) const = default;

    static constexpr auto fields() {
        return std::tuple{field("executable", &DependencyInstallStep::executable),
                          field("args", &DependencyInstallStep::args),
                          field("cwd", &DependencyInstallStep::cwd),
                          field("displayCommand", &DependencyInstallStep::displayCommand)};
    }
};

struct DependencyInstallPlan {
    std::string summary;                       // one line, for the question before it runs
    std::vector<DependencyInstallStep> steps;  // in the order of execution

    bool operator==(const DependencyInstallPlan&) const = default;

    static constexpr auto fields() {
        return std::tuple{field("summary", &DependencyInstallPlan::summary),
                          field("steps", &DependencyInstallPlan::steps)};
    }
};

namespace DependencyInstaller {

// Why there is no plan.
struct PlanError {
    struct UnsupportedManager {
        std::string manager;
        bool operator==(const UnsupportedManager&) const = default;
    };
    struct MissingPythonEnvironment {
        bool operator==(const MissingPythonEnvironment&) const = default;
    };
    struct NoInstallRecipe {
        bool operator==(const NoInstallRecipe&) const = default;
    };

    std::variant<UnsupportedManager, MissingPythonEnvironment, NoInstallRecipe> value;

    std::string errorDescription() const;

    bool operator==(const PlanError&) const = default;
};

using Plan = std::variant<DependencyInstallPlan, PlanError>;

// They read a few files. What was found constrained or blocked is never named in a plan.
Plan nodePlan(const DependencyEcosystemResult& result, const ProjectPlace& place);
// Where several environments may be the project's it runs their interpreters: it blocks then, and
// is never to be called from the main thread.
Plan pythonPlan(const DependencyTools& tools, const DependencyEcosystemResult& result,
                const ProjectPlace& place);

// What the steps of a Python plan run with: `uv` where there is one, or else the interpreter's pip.
struct PythonStepTools {
    std::string pythonExecutable;
    std::optional<std::string> uvExecutable;
    std::string cwd;
};
DependencyInstallStep pythonInstallStep(const PythonStepTools& tools,
                                        const std::string& requirementFile);
DependencyInstallStep pythonEditableInstallStep(const PythonStepTools& tools);
DependencyInstallStep pythonUpgradeStep(const PythonStepTools& tools,
                                        const std::vector<std::string>& packages);

// Runs the steps up to the first one that fails. The status is that of the last step that ran (0
// for a plan without steps); the output of each step stands behind its command, and a silent one
// leaves no trace. `observer` gets the output of both streams as it
// comes, on the calling thread. Blocks, never from the main thread; nothing is rolled back.
struct RunRequest {
    DependencyInstallPlan plan;
    std::chrono::nanoseconds timeoutPerStep;
    std::function<void(std::string_view bytes)> observer = {};
    // Told before each step.
    std::function<void(const DependencyInstallStep& step)> begins = {};
};
CommandResult run(const DependencyTools& tools, const RunRequest& request);

// The folder of a result's project: the repository itself for none, for "" and for ".".
std::string absoluteProjectPath(const std::optional<std::string>& project,
                                const std::string& repoPath);

// Whether a plan may name the package: its update can be taken, and no manager would read the name
// as an option. (A report repeats what a repository's manifest says, and "--global" may stand
// there.)
bool mayBeNamed(const DependencyUpdate& update);

// By "pnpm-workspace.yaml" or "pnpm-lock.yaml" in the root.
bool isInsidePnpmWorkspace(const std::string& repoPath);

// The first of the candidates that can be executed.
std::optional<std::string> resolveUVExecutable(const DependencyTools& tools);

}  // namespace DependencyInstaller
}  // namespace tarnbeck
