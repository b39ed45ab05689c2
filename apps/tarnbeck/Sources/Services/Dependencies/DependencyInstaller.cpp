#include "DependencyInstaller.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "DependencyScanner+Expo.h"
#include "DependencyScanner+Reports.h"
#include "FileSystem.h"
#include "Overloaded.h"
#include "Text.h"

namespace tarnbeck::DependencyInstaller {
namespace {

std::vector<std::string> actionablePackages(const DependencyEcosystemResult& result) {
    std::vector<std::string> packages;
    for (const DependencyUpdate& update : result.updates) {
        if (mayBeNamed(update)) packages.push_back(update.package);
    }
    return DependencyScanner::sortedUnique(std::move(packages));
}

DependencyInstallStep step(std::vector<std::string> args, std::string cwd) {
    std::string words = joined(args, " ");
    return {.executable = "/usr/bin/env",
            .args = std::move(args),
            .cwd = std::move(cwd),
            .displayCommand = std::move(words)};
}

// One Node project, and what its plans are made of.
struct Project {
    ProjectPlace place;
    std::string name;  // relative to the repository, "." for its root
    bool hasExpo;
    std::vector<std::string> packages;  // all within their ranges when empty

    DependencyInstallStep update(std::vector<std::string> args, std::string cwd) const {
        std::ranges::copy(packages, std::back_inserter(args));
        return step(std::move(args), std::move(cwd));
    }
    DependencyInstallStep expoFix(std::string_view manager) const {
        return step(DependencyScanner::expoFixArguments(manager), place.projectPath);
    }
};

DependencyInstallPlan pnpmPlan(const Project& project) {
    const bool isRoot = project.name == ".";
    std::vector<std::string> arguments = {"pnpm", "update"};
    if (!isRoot) arguments.insert(arguments.end(), {"--filter", "./" + project.name + "..."});

    const std::string& root = project.place.repoPath;
    DependencyInstallPlan plan;
    plan.summary =
        project.hasExpo
            ? fmt::format("Align Expo-compatible Node dependencies (pnpm, {})", project.name)
            : fmt::format("Update Node dependencies (pnpm, {})", isRoot ? "root" : project.name);
    plan.steps.push_back(step({"pnpm", "install"}, root));
    if (project.hasExpo) plan.steps.push_back(project.expoFix("pnpm"));
    if (!project.hasExpo || !project.packages.empty()) {
        plan.steps.push_back(project.update(std::move(arguments), root));
    }
    return plan;
}

DependencyInstallPlan npmPlan(const Project& project) {
    DependencyInstallPlan plan;
    plan.summary = fmt::format(
        "{} (npm, {})",
        project.hasExpo ? "Align Expo-compatible Node dependencies" : "Update Node dependencies",
        project.name);
    if (project.hasExpo) plan.steps.push_back(project.expoFix("npm"));
    if (!project.hasExpo || !project.packages.empty()) {
        plan.steps.push_back(project.update({"npm", "update"}, project.place.projectPath));
    }
    return plan;
}

// Of managers whose check names no packages.
DependencyInstallPlan wholesalePlan(const Project& project, std::vector<std::string> args) {
    return {.summary = fmt::format("Update Node dependencies ({}, {})", args.front(), project.name),
            .steps = {step(std::move(args), project.place.projectPath)}};
}

bool hasFailed(const CommandResult& result) {
    return result.timedOut || result.terminationStatus != 0 || result.launchError.has_value();
}

}  // namespace

std::string PlanError::errorDescription() const {
    return std::visit(
        Overloaded{
            [](const UnsupportedManager& unsupported) {
                return fmt::format("No install action is available for manager '{}'.",
                                   unsupported.manager);
            },
            [](const MissingPythonEnvironment&) {
                return std::string("No local Python virtualenv found (.venv/ or venv/).");
            },
            [](const NoInstallRecipe&) {
                return std::string("No install recipe found (requirements or pyproject).");
            },
        },
        value);
}

Plan nodePlan(const DependencyEcosystemResult& result, const ProjectPlace& place) {
    const Project project{.place = place,
                          .name = result.project.value_or("."),
                          .hasExpo = DependencyScanner::declaresExpo(place.projectPath),
                          .packages = actionablePackages(result)};
    const bool isWorkspaceMember = project.name != "." && isInsidePnpmWorkspace(place.repoPath);
    if (result.manager == "pnpm" || isWorkspaceMember) return pnpmPlan(project);
    if (result.manager == "npm") return npmPlan(project);
    if (result.manager == "yarn") return wholesalePlan(project, {"yarn", "upgrade"});
    if (result.manager == "bun") return wholesalePlan(project, {"bun", "update"});
    return PlanError{PlanError::UnsupportedManager{result.manager}};
}

CommandResult run(const DependencyTools& tools, const RunRequest& request) {
    CommandResult last{.terminationStatus = 0};
    std::vector<std::string> output;
    std::vector<std::string> errors;
    for (const DependencyInstallStep& step : request.plan.steps) {
        if (request.begins) request.begins(step);
        Command command{.executable = step.executable,
                        .args = step.args,
                        .cwd = step.cwd,
                        .timeout = request.timeoutPerStep};
        command.observer = request.observer;
        last = tools.runCommand(command);
        const auto block = [&](const std::string& stream) {
            return fmt::format("$ {}\n{}", step.displayCommand, stream);
        };
        if (!last.stdout.empty()) output.push_back(block(last.stdout));
        if (!last.stderr.empty()) errors.push_back(block(last.stderr));
        if (hasFailed(last)) break;
    }
    last.stdout = joined(output, "\n\n");
    last.stderr = joined(errors, "\n\n");
    return last;
}

std::string absoluteProjectPath(const std::optional<std::string>& project,
                                const std::string& repoPath) {
    if (!project || project->empty() || *project == ".") return repoPath;
    const bool hasSlash = repoPath.ends_with('/') || project->starts_with('/');
    return repoPath + (hasSlash ? "" : "/") + *project;
}

bool mayBeNamed(const DependencyUpdate& update) {
    return update.isActionable() && !update.package.starts_with('-');
}

bool isInsidePnpmWorkspace(const std::string& repoPath) {
    return exists(repoPath + "/pnpm-workspace.yaml") || exists(repoPath + "/pnpm-lock.yaml");
}

}  // namespace tarnbeck::DependencyInstaller
