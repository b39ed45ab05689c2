// Which repositories the paths on the command line mean.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "AppConfiguration.h"
#include "NameCollator.h"
#include "Result.h"

namespace tarnbeck::cli {

struct SelectionProblem {
    std::string path;
    std::string reason;
    bool isFailure = true;  // false: nothing was found, and that is all

    bool operator==(const SelectionProblem&) const = default;
};

struct RepositorySelection {
    std::vector<std::string> paths;  // absolute, none twice, in the order in which they were named
    std::vector<SelectionProblem> problems;
};

// The path as typed, made absolute.
std::string absolutePath(const std::string& typed, const std::string& home);

// The repository whose work tree holds the (absolute) path.
std::optional<std::string> enclosingRepository(const std::string& path);

// The repository that the path as typed lies in, or the reason why there is none.
Result<std::string> repositoryAround(const std::string& typed, const std::string& home);

// Why the path can't be used at all: it does not exist, or can't be reached.
std::optional<std::string> reasonWhyMissing(const std::string& path);

// Why the path is no repository: it is missing, or there is no ".git" in it.
std::optional<std::string> reasonWhyNoRepository(const std::string& path);

// Why nothing can be looked for below the path: it is missing, no folder, or can't be read.
std::optional<std::string> reasonWhyUnsearchable(const std::string& path);

// For each path the repository that it lies in, or else all that discovery finds below it. Asks
// the file system.
RepositorySelection selectedRepositories(const std::vector<std::string>& paths,
                                         const AppConfiguration& configuration,
                                         const std::string& home);

// The same for the paths on the command line, or without any for the configured ones (looked for
// first on a first start), sorted by name.
RepositorySelection selectedOrConfigured(const std::vector<std::string>& paths,
                                         const ConfigurationPlace& place,
                                         const NameCollator& collator);

}  // namespace tarnbeck::cli
