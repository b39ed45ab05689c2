#include "RepositorySelection.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include "FileDescriptor.h"
#include "FileSystem.h"
#include "Paths.h"
#include "RepositoryDiscovery.h"
#include "RepositoryScanner.h"

namespace tarnbeck::cli {
namespace {

// The folders that discovery leaves out, but for those that the user just named.
std::vector<std::string> ignoredBelow(const std::string& directory,
                                      const AppConfiguration& configuration,
                                      const std::string& home) {
    auto ignored = normalizeDiscoveryPaths(configuration.discoveryIgnorePaths, home);
    std::erase_if(ignored,
                  [&](const std::string& path) { return shouldIgnorePath(directory, {path}); });
    return ignored;
}

void addOnce(std::vector<std::string>& paths, const std::string& path) {
    if (std::ranges::find(paths, path) == paths.end()) paths.push_back(path);
}

RepositorySelection configuredRepositories(const ConfigurationPlace& place) {
    RepositorySelection selection;
    const auto configuration = RepositoryScanner::loadInitialConfiguration(place);
    for (const std::string& configured : configuration.repoPaths) {
        const std::string path = absolutePath(configured, place.home);
        if (const auto reason = reasonWhyNoRepository(path)) {
            selection.problems.push_back({path, *reason});
        } else {
            selection.paths.push_back(path);
        }
    }
    return selection;
}

}  // namespace

std::string absolutePath(const std::string& typed, const std::string& home) {
    return standardized(expandingTilde(typed, home));
}

std::optional<std::string> enclosingRepository(const std::string& path) {
    for (std::string folder = path;; folder = parentPath(folder)) {
        if (exists(folder + "/.git")) return folder;
        if (folder == "/" || folder.empty()) return std::nullopt;
    }
}

Result<std::string> repositoryAround(const std::string& typed, const std::string& home) {
    const std::string path = absolutePath(typed, home);
    if (auto missing = reasonWhyMissing(path)) return Failure{*std::move(missing)};
    if (auto repository = enclosingRepository(path)) return *std::move(repository);
    return Failure{"is neither a git repository nor inside one"};
}

std::optional<std::string> reasonWhyMissing(const std::string& path) {
    if (access(path.c_str(), F_OK) == 0) return std::nullopt;
    return errno == ENOENT ? "does not exist" : "can't be reached: " + systemErrorText(errno);
}

std::optional<std::string> reasonWhyNoRepository(const std::string& path) {
    if (auto missing = reasonWhyMissing(path)) return missing;
    if (exists(path + "/.git")) return std::nullopt;
    return "is not a git repository (there is no .git)";
}

std::optional<std::string> reasonWhyUnsearchable(const std::string& path) {
    if (auto missing = reasonWhyMissing(path)) return missing;
    const FileDescriptor opened(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened) return std::nullopt;
    if (errno == ENOTDIR) return "is not a folder";
    return "can't be read: " + systemErrorText(errno);
}

RepositorySelection selectedRepositories(const std::vector<std::string>& paths,
                                         const AppConfiguration& configuration,
                                         const std::string& home) {
    RepositorySelection selection;
    for (const std::string& typed : paths) {
        const std::string path = absolutePath(typed, home);
        if (const auto reason = reasonWhyMissing(path)) {
            selection.problems.push_back({typed, *reason});
        } else if (const auto repository = enclosingRepository(path)) {
            addOnce(selection.paths, *repository);
        } else if (const auto unreadable = reasonWhyUnsearchable(path)) {
            selection.problems.push_back({typed, *unreadable});
        } else {
            const auto found = discoverRepos(
                {.in = {path}, .ignoring = ignoredBelow(path, configuration, home), .home = home});
            for (const std::string& each : found) addOnce(selection.paths, each);
            if (found.empty()) {
                selection.problems.push_back({typed, "no repository found below it", false});
            }
        }
    }
    return selection;
}

RepositorySelection selectedOrConfigured(const std::vector<std::string>& paths,
                                         const ConfigurationPlace& place,
                                         const NameCollator& collator) {
    RepositorySelection selection =
        paths.empty() ? configuredRepositories(place)
                      : selectedRepositories(paths, AppConfiguration::load(place), place.home);
    std::ranges::stable_sort(selection.paths, [&](const auto& left, const auto& right) {
        return collator.compare(lastPathComponent(left), lastPathComponent(right)) < 0;
    });
    return selection;
}

}  // namespace tarnbeck::cli
