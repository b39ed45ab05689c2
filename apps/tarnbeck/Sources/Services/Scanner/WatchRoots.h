// What is watched, and which repository an event in a watched folder concerns.
#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "GitRepository.h"
#include "TextHash.h"

namespace tarnbeck {

// From a watched folder to the path of its repository.
using WatchRootMap = std::unordered_map<std::string, std::string, TextHash, std::equal_to<>>;

// Whose changes are to be seen.
struct WatchSubject {
    std::vector<std::string> configuredPaths;  // may begin with a tilde
    std::vector<RepositorySnapshot> repositories;
    std::string home;
};

}  // namespace tarnbeck
