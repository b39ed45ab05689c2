#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

#include "DependencyInstaller.h"
#include "DependencyScanner+Discovery.h"
#include "DependencyScanner+Python.h"
#include "DependencyScanner+PythonReports.h"
#include "DependencyScanner+PythonRequirements.h"
#include "DependencyScanner+Reports.h"
#include "PythonPrograms.h"
#include "Text.h"

namespace tarnbeck::DependencyScanner {
namespace {

// A tool that lists packages, and the arguments that make it do so.
struct PythonLister {
    std::string manager;
    std::string executable;
    std::vector<std::string> args;
};

PythonLister pipLister(const std::string& python) {
    return {.manager = "pip", .executable = python, .args = {"-m", "pip", "list"}};
}

// Absent where there is no uv.
std::optional<PythonLister> uvLister(const DependencyTools& tools) {
    auto uv = DependencyInstaller::resolveUVExecutable(tools);
    if (!uv) return std::nullopt;
    return PythonLister{.manager = "uv", .executable = *std::move(uv), .args = {"pip", "list"}};
}

CommandResult listed(const DependencyTools& tools, const PythonLister& lister,
                     const PythonEnvironment& environment, bool outdated) {
    std::vector<std::string> args = lister.args;
    if (outdated) args.emplace_back("--outdated");
    args.emplace_back("--format=json");
    if (lister.manager == "uv") {
        args.insert(args.end(), {"--python", environment.pythonExecutable});
    }
    return tools.runCommand(
        {.executable = lister.executable,
         .args = std::move(args),
         .cwd = environment.projectPath,
         .timeout = outdated ? tools.timeouts.pythonOutdated : tools.timeouts.pythonList});
}

bool endedWell(const CommandResult& result) {
    return result.terminationStatus == 0 && !result.timedOut;
}

DependencyEcosystemResult pythonResult(std::string project, std::string manager,
                                       DependencyHealth status,
                                       std::optional<std::string> message = std::nullopt) {
    return {.ecosystem = DependencyEcosystem::python,
            .project = std::move(project),
            .manager = std::move(manager),
            .status = status,
            .message = std::move(message)};
}

DependencyHealth pythonHealth(const std::vector<DependencyUpdate>& updates) {
    if (updates.empty()) return DependencyHealth::upToDate;
    const bool anyCanBeTaken = std::ranges::any_of(updates, &DependencyUpdate::isActionable);
    return anyCanBeTaken ? DependencyHealth::updatesAvailable : DependencyHealth::constraints;
}

// The verdict that follows from what some tool lists as outdated.
DependencyEcosystemResult judgedUpdates(const DependencyTools& tools, const PythonProject& project,
                                        const std::string& manager,
                                        std::vector<DependencyUpdate> listedUpdates) {
    const PythonEnvironment& environment = project.environment;
    auto reconciled = reconcilePythonUpdates(std::move(listedUpdates), environment.projectPath);
    auto marked = markBlockedPythonUpdates(tools, std::move(reconciled.updates), environment);
    const auto origins = classifyPythonUpdateOrigins(tools, marked.updates, environment);
    auto updates =
        normalizedPythonUpdates(applyPythonUpdateOrigins(std::move(marked.updates), origins));
    auto result = pythonResult(
        project.project, manager, pythonHealth(updates),
        pythonCompositeMessage(reconciled.driftedPackages, marked.blockedReasons, updates));
    result.updates = std::move(updates);
    return result;
}

// Absent when the tool has no answer.
std::optional<DependencyEcosystemResult> viaOutdatedList(const DependencyTools& tools,
                                                         const PythonProject& project,
                                                         const PythonLister& lister) {
    const CommandResult answer = listed(tools, lister, project.environment, true);
    const std::string_view text = trimmingWhitespaceAndNewlines(answer.stdout);
    if (text.empty()) {
        if (!endedWell(answer)) return std::nullopt;
        return pythonResult(project.project, lister.manager, DependencyHealth::upToDate);
    }
    auto updates = parseOutdatedJSON(text, DependencyEcosystem::python);
    if (!updates) return std::nullopt;
    return judgedUpdates(tools, project, lister.manager, *std::move(updates));
}

struct PythonListing {
    std::string manager;
    std::string packages;  // as printed, trimmed; empty when they could not be listed
};

PythonListing listedPackages(const DependencyTools& tools, const PythonEnvironment& environment) {
    const auto with = [&](const PythonLister& lister) {
        const CommandResult answer = listed(tools, lister, environment, false);
        PythonListing listing{.manager = lister.manager};
        if (endedWell(answer)) listing.packages = trimmingWhitespaceAndNewlines(answer.stdout);
        return listing;
    };
    PythonListing listing = with(pipLister(environment.pythonExecutable));
    if (!listing.packages.empty()) return listing;
    const auto uv = uvLister(tools);
    return uv ? with(*uv) : listing;
}

}  // namespace

std::vector<DependencyEcosystemResult> scanPython(const DependencyTools& tools,
                                                  const ProjectPlaces& places) {
    std::vector<DependencyEcosystemResult> results;
    for (const std::string& project : standardizedSorted(places.projectPaths)) {
        results.push_back(
            scanPythonProject(tools, {.projectPath = project, .repoPath = places.repoPath}));
    }
    return results;
}

DependencyEcosystemResult scanPythonProject(const DependencyTools& tools,
                                            const ProjectPlace& place) {
    const std::string name = relativeProjectPath(place);
    const auto python = detectPythonExecutable(tools, place);
    if (!python) {
        return pythonResult(name, "pip", DependencyHealth::syncNeeded,
                            "No local virtualenv found (.venv/ or venv/). Install to sync.");
    }
    const PythonProject project{
        .environment = {.pythonExecutable = *python, .projectPath = place.projectPath},
        .project = name};
    if (auto result = viaOutdatedList(tools, project, pipLister(*python))) return *result;
    if (const auto uv = uvLister(tools)) {
        if (auto result = viaOutdatedList(tools, project, *uv)) return *result;
    }
    return scanPythonProjectViaAPI(tools, project);
}

DependencyEcosystemResult scanPythonProjectViaAPI(const DependencyTools& tools,
                                                  const PythonProject& project) {
    const auto [manager, packages] = listedPackages(tools, project.environment);
    const auto failed = [&](std::string message) {
        return pythonResult(project.project, manager, DependencyHealth::error, std::move(message));
    };
    if (packages.empty()) return failed("Could not list installed packages");
    const CommandResult answer =
        tools.runCommand({.executable = project.environment.pythonExecutable,
                          .args = {"-c", std::string(PythonPrograms::pypi), packages},
                          .cwd = project.environment.projectPath,
                          .timeout = tools.timeouts.pypi});
    if (answer.timedOut) return failed("Timeout checking PyPI for updates");
    auto updates = parseOutdatedJSON(trimmingWhitespaceAndNewlines(answer.stdout),
                                     DependencyEcosystem::python);
    if (updates) return judgedUpdates(tools, project, manager, *std::move(updates));
    if (answer.terminationStatus != 0) return failed("Could not check PyPI for updates");
    return pythonResult(project.project, manager, DependencyHealth::upToDate);
}

std::vector<DependencyEcosystemResult> initialPythonSummaries(const ProjectPlaces& places) {
    std::vector<DependencyEcosystemResult> results;
    for (const std::string& project : standardizedSorted(places.projectPaths)) {
        results.push_back(
            pythonResult(relativeProjectPath({.projectPath = project, .repoPath = places.repoPath}),
                         "pip", DependencyHealth::checking));
    }
    return results;
}

}  // namespace tarnbeck::DependencyScanner
