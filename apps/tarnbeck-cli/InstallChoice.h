// Which project is to be installed, what is shown before, and how it went. Pure; any thread.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "DependencyInstaller.h"
#include "DependencyStatus.h"
#include "Result.h"

namespace tarnbeck::cli {

struct ProjectQuestion {
    DependencySummary summary;
    std::string repoPath;
    std::string folder;                // the path that the user named, absolute
    std::optional<std::string> named;  // the project that the user named
};

// The results of one project, those of Node first: the named one; without a name the one in the
// folder, or else the only one. Otherwise why none is meant, of one or more lines, with the
// projects that there are.
Result<std::vector<DependencyEcosystemResult>> chosenProject(const ProjectQuestion& question);

// What a plan will do: its summary, and below it the commands, by folder.
std::string planText(const DependencyInstallPlan& plan);

// "Updated Node dependencies (npm, web)" of "Update Node dependencies (npm, web)".
std::string doneInWords(std::string_view planSummary);

struct StepOutcome {
    DependencyInstallStep step;  // the last one that ran
    CommandResult result;
    std::chrono::nanoseconds timeout;
};

// Why a step failed; absent when it did not.
std::optional<std::string> stepFailureInWords(const StepOutcome& outcome);

}  // namespace tarnbeck::cli
