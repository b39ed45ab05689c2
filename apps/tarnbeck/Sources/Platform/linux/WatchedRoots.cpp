#include "WatchedRoots.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "PathTrail.h"

namespace tarnbeck {

WatchedRoots::WatchedRoots(std::vector<std::string> paths, const PrunedFolders& pruned,
                           WatchedFolders& folders)
    : folders_(folders) {
    for (std::string& path : paths) {
        if (!pruned.isBelowExcluded(path)) roots_.push_back({.path = std::move(path)});
    }
}

void WatchedRoots::follow() {
    const Guards before = std::exchange(guards_, {});
    guardAll();
    for (Root& root : roots_) followOne(root);
    release(before);
    isFirst_ = false;
}

void WatchedRoots::guardAll() {
    std::unordered_map<std::string, int> watches;  // most roots lie in the same few folders
    for (const Root& root : roots_) {
        followTrail(root.path, [&](const std::string& folder, const std::string& name) {
            const auto [known, isNew] = watches.try_emplace(folder, -1);
            if (isNew) known->second = folders_.watchGuard(folder);
            if (known->second >= 0) guards_[known->second].push_back(name);
        });
    }
    for (auto& [watch, names] : guards_) std::sort(names.begin(), names.end());
}

void WatchedRoots::followOne(Root& root) {
    const int watch = folders_.watchRoot(root.path);
    if (watch == root.watch) return;
    if (root.watch >= 0) folders_.leaveRoot(root.watch, root.path);
    root.watch = watch;
    if (!isFirst_) folders_.batch().addPath(root.path);
}

void WatchedRoots::release(const Guards& before) {
    WatchTree& tree = folders_.tree();
    for (const auto& [watch, names] : before) {
        const auto folder = tree.find(watch);
        if (guards_.contains(watch) || folder == WatchTree::none) continue;
        tree.setGuard(folder, false);
        if (!tree.isWatched(folder)) folders_.drop(folder);
    }
}

bool WatchedRoots::concerns(int guard, std::string_view name) const {
    const auto found = guards_.find(guard);
    return found != guards_.end() &&
           std::binary_search(found->second.begin(), found->second.end(), name);
}

std::vector<std::string> WatchedRoots::thoseOf(const std::vector<std::string>& folders) const {
    std::vector<std::string> paths;
    for (const Root& root : roots_) {
        const std::string below = root.path == "/" ? root.path : root.path + "/";
        const bool isMeant =
            std::any_of(folders.begin(), folders.end(), [&](const std::string& folder) {
                return folder == root.path || folder.starts_with(below);
            });
        if (isMeant) paths.push_back(root.path);
    }
    return paths;
}

}  // namespace tarnbeck
