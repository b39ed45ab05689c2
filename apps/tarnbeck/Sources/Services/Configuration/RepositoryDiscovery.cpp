#include "RepositoryDiscovery.h"

#include <algorithm>
#include <utility>

#include "FileSystem.h"
#include "FileSystemWatcher.h"
#include "FolderListing.h"
#include "Paths.h"
#include "SystemPaths.h"
#include "Text.h"

namespace tarnbeck {
namespace {

// The names of the folders in `directory`, links left out; none when it can't be read.
std::vector<std::string> subfolders(const std::string& directory) {
    std::vector<std::string> names;
    FolderListing listing;
    listing.open(directory);
    while (const auto entry = listing.next()) {
        if (entry->isFolder) names.emplace_back(entry->name);
    }
    return names;
}

class Discovery {
  public:
    explicit Discovery(std::vector<std::string> ignoredPaths)
        : ignoredPaths_(std::move(ignoredPaths)) {}

    void search(const std::string& root) {
        if (shouldIgnorePath(root, ignoredPaths_)) return;
        std::vector<std::string> pending = {root};
        while (!pending.empty()) {
            const std::string directory = std::move(pending.back());
            pending.pop_back();
            for (const std::string& name : subfolders(directory)) {
                std::string path = directory == "/" ? "/" + name : directory + "/" + name;
                if (shouldDescend(path, name)) pending.push_back(std::move(path));
            }
        }
    }

    std::vector<std::string> takeFound() { return {found_.begin(), found_.end()}; }

  private:
    bool shouldDescend(const std::string& path, const std::string& name) {
        if (shouldIgnorePath(path, ignoredPaths_)) return false;
        if (exists(path + "/.git")) {
            found_.insert(path);
            return false;
        }
        return !name.starts_with('.') && !discoveryTraversalExcludes().contains(name) &&
               !isPackage(path);
    }

    std::vector<std::string> ignoredPaths_;
    std::set<std::string> found_;
};

}  // namespace

std::vector<std::string> normalizeDiscoveryPaths(const std::vector<std::string>& paths,
                                                 std::string_view home) {
    std::vector<std::string> normalized;
    normalized.reserve(paths.size());
    for (const std::string& path : paths) {
        normalized.push_back(standardized(expandingTilde(path, home)));
    }
    return normalized;
}

bool shouldIgnorePath(std::string_view path, const std::vector<std::string>& ignoredPaths) {
    return std::ranges::any_of(ignoredPaths, [path](std::string_view ignored) {
        return path.starts_with(ignored) &&
               (path.size() == ignored.size() || path[ignored.size()] == '/');
    });
}

const std::set<std::string, std::less<>>& discoveryTraversalExcludes() {
    static const std::set<std::string, std::less<>> names = [] {
        auto withGit = FileSystemWatcher::defaultExcludes();
        withGit.insert(".git");
        return withGit;
    }();
    return names;
}

std::vector<std::string> discoverRepos(const DiscoveryRequest& request) {
    Discovery discovery(normalizeDiscoveryPaths(request.ignoring, request.home));
    for (const std::string& root : normalizeDiscoveryPaths(request.in, request.home)) {
        discovery.search(root);
    }
    return discovery.takeFound();
}

AppConfiguration loadConfigurationDiscoveringRepos(const ConfigurationPlace& place) {
    AppConfiguration configuration = AppConfiguration::load(place);
    if (configuration.repoPaths.empty()) {
        configuration.repoPaths = discoverRepos({.in = configuration.scanDirectories,
                                                 .ignoring = configuration.discoveryIgnorePaths,
                                                 .home = place.home});
        std::erase_if(configuration.repoPaths, [&](const std::string& path) {
            if (isValidUtf8(path)) return false;
            place.report("Left out, its path is not valid UTF-8: " + printable(path));
            return true;
        });
        configuration.save(place);
    }
    configuration.dropRepeatedRepoPaths(place.home);
    return configuration;
}

}  // namespace tarnbeck
