// Finding repositories below folders, and the ignore rules that discovery and settings share.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "AppConfiguration.h"

namespace tarnbeck {

// Tildes expanded, and "." and ".." gone.
std::vector<std::string> normalizeDiscoveryPaths(const std::vector<std::string>& paths,
                                                 std::string_view home);

// Whether a normalized path is one of `ignoredPaths` or lies below one.
bool shouldIgnorePath(std::string_view path, const std::vector<std::string>& ignoredPaths);

// Names of folders that discovery never descends into.
const std::set<std::string, std::less<>>& discoveryTraversalExcludes();

struct DiscoveryRequest {
    std::vector<std::string> in = AppConfiguration{}.scanDirectories;
    std::vector<std::string> ignoring = {};
    std::string home;
};

// The folders below `in` that hold a ".git", sorted by bytes. A repository inside a repository is
// not found, and neither is what only a symbolic link leads to; the folders of `in` themselves are
// no candidates. What can't be read is passed over. Blocks on the disk, perhaps for long.
std::vector<std::string> discoverRepos(const DiscoveryRequest& request);

// The stored configuration; on a first start (no repositories in it) filled with what discovery
// finds, and saved. Repositories that stand in it twice count once.
AppConfiguration loadConfigurationDiscoveringRepos(const ConfigurationPlace& place);

}  // namespace tarnbeck
