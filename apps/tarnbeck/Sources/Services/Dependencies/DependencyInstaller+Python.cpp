#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "DependencyInstaller.h"
#include "DependencyScanner+Python.h"
#include "DependencyScanner+PythonClassification.h"
#include "FileSystem.h"
#include "Paths.h"
#include "Text.h"

namespace tarnbeck::DependencyInstaller {
namespace {

// "uv pip install --python PYTHON …" or "PYTHON -m pip install …".
DependencyInstallStep pipInstall(const PythonStepTools& tools, std::vector<std::string> what) {
    const std::string executable = tools.uvExecutable.value_or(tools.pythonExecutable);
    std::vector<std::string> args = {"-m", "pip", "install"};
    if (tools.uvExecutable) args = {"pip", "install", "--python", tools.pythonExecutable};
    std::ranges::move(what, std::back_inserter(args));
    std::string words = fmt::format("{} {}", executable, joined(args, " "));
    return {.executable = executable,
            .args = std::move(args),
            .cwd = tools.cwd,
            .displayCommand = std::move(words)};
}

// The steps that bring the environment to what the project's own files ask for.
std::vector<DependencyInstallStep> manifestSteps(const PythonStepTools& tools) {
    std::vector<DependencyInstallStep> steps;
    for (const std::string& file : DependencyScanner::pythonConstraintFiles(tools.cwd)) {
        steps.push_back(pythonInstallStep(tools, std::string(lastPathComponent(file))));
    }
    if (steps.empty() && exists(tools.cwd + "/pyproject.toml")) {
        steps.push_back(pythonEditableInstallStep(tools));
    }
    return steps;
}

// What is in the environment alone: the rest changes through the project's own files.
std::vector<std::string> packagesOfEnvironmentOnly(const DependencyEcosystemResult& result) {
    std::vector<std::string> packages;
    for (const DependencyUpdate& update : result.updates) {
        if (mayBeNamed(update) && update.origin == DependencyUpdateOrigin::venvOnly) {
            packages.push_back(update.package);
        }
    }
    std::ranges::sort(packages);
    return packages;
}

}  // namespace

Plan pythonPlan(const DependencyTools& tools, const DependencyEcosystemResult& result,
                const ProjectPlace& place) {
    const auto python = DependencyScanner::detectPythonExecutable(tools, place);
    if (!python) return PlanError{PlanError::MissingPythonEnvironment{}};
    const PythonStepTools stepTools{.pythonExecutable = *python,
                                    .uvExecutable = resolveUVExecutable(tools),
                                    .cwd = place.projectPath};
    DependencyInstallPlan plan{.summary = "Sync Python dependencies",
                               .steps = manifestSteps(stepTools)};
    const std::vector<std::string> packages = packagesOfEnvironmentOnly(result);
    if (packages.empty()) {
        if (plan.steps.empty()) return PlanError{PlanError::NoInstallRecipe{}};
        return plan;
    }
    plan.steps.push_back(pythonUpgradeStep(stepTools, packages));
    plan.summary += fmt::format(" + upgrade {} venv package{}", packages.size(),
                                packages.size() == 1 ? "" : "s");
    return plan;
}

DependencyInstallStep pythonInstallStep(const PythonStepTools& tools,
                                        const std::string& requirementFile) {
    return pipInstall(tools, {"-r", requirementFile});
}

DependencyInstallStep pythonEditableInstallStep(const PythonStepTools& tools) {
    return pipInstall(tools, {"-e", "."});
}

DependencyInstallStep pythonUpgradeStep(const PythonStepTools& tools,
                                        const std::vector<std::string>& packages) {
    std::vector<std::string> what = {"--upgrade"};
    std::ranges::copy(packages, std::back_inserter(what));
    return pipInstall(tools, std::move(what));
}

}  // namespace tarnbeck::DependencyInstaller
