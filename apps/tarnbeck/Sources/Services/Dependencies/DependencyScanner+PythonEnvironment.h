// Which virtual environment is a Python project's. Any thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "DependencyMarkers.h"
#include "DependencyScanner+PythonRequirements.h"
#include "DependencyTools.h"

namespace tarnbeck::DependencyScanner {

// The project's folder and its parents up to the repository's root, nearest first; the project's
// alone when it lies elsewhere. Pure.
std::vector<std::string> pythonEnvironmentSearchPaths(const ProjectPlace& place);

struct MatchQuestion {
    std::string pythonExecutable;
    PythonConstraints constraints;
    std::string cwd;
};
// How many of the constraints the packages of an interpreter satisfy; 0 when it can't be asked.
// Blocks, never from the main thread.
int pythonRequirementMatchScore(const DependencyTools& tools, const MatchQuestion& question);

struct ExecutablePlace {
    std::string executable;
    std::string projectPath;
};
// How many folders lie between the one that holds the interpreter's environment and the project.
// Pure.
std::size_t pythonExecutableDistanceToProject(const ExecutablePlace& place);

}  // namespace tarnbeck::DependencyScanner
