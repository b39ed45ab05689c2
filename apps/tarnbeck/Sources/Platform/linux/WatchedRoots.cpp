#include "WatchedRoots.h"

#include <algorithm>
#include <utility>

#include <sys/inotify.h>

namespace tarnbeck {
namespace {

constexpr std::uint32_t ownMoves = IN_MOVE_SELF | IN_DELETE_SELF;
constexpr std::uint32_t removals = IN_DELETE;
// Of a name that is there but can't be used, too: it may be removed, and its mode may change.
constexpr std::uint32_t appearances =
    IN_CREATE | IN_MOVED_TO | IN_ATTRIB | IN_DELETE | IN_MOVED_FROM;

}  // namespace

WatchedRoots::WatchedRoots(std::vector<std::string> paths, const PrunedFolders& pruned,
                           WatchedFolders& folders)
    : folders_(folders) {
    for (std::string& path : paths) {
        if (!pruned.isBelowExcluded(path)) roots_.push_back({.path = std::move(path)});
    }
}

void WatchedRoots::follow() {
    releaseTalkative();
    const Guards before = std::exchange(guards_, {});
    for (Root& root : roots_) followOne(root);
    for (auto& [watch, guard] : guards_) std::sort(guard.names.begin(), guard.names.end());
    release(before);
    watchedWays_.clear();
    isFirst_ = false;
}

void WatchedRoots::followOne(Root& root) {
    const int watch = reach(root);
    if (watch == root.watch) return;
    if (root.watch >= 0) folders_.leaveRoot(root.watch, root.path);
    root.watch = watch;
    if (!isFirst_) folders_.batch().addPath(root.path);
}

int WatchedRoots::reach(const Root& root) {
    // Beyond that somebody plays with the folders above: the events of it will come.
    constexpr int mostAttempts = 10;
    PathStep awaited;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const PathStep last = guardTheWay(root);
        const int watch = folders_.watchRoot(root.path);
        if (watch >= 0 || last == awaited) return watch;
        guardName(last, appearances);
        awaited = last;
    }
    return -1;
}

PathStep WatchedRoots::guardTheWay(const Root& root) {
    PathStep last = followTrail(root.path, [this](const PathStep& step) {
        const auto [known, isNew] = watchedWays_.try_emplace(step.path(), -1);
        if (known->second < 0) known->second = folders_.watchGuard(known->first, ownMoves);
        if (known->second >= 0) guards_.try_emplace(known->second);
    });
    if (!last.name.empty()) guardName(last, removals);
    return last;
}

void WatchedRoots::guardName(const PathStep& step, std::uint32_t mask) {
    const int watch = folders_.watchGuard(step.folder, mask);
    if (watch < 0) return;
    Guard& guard = guards_[watch];
    guard.names.push_back(step.name);
    guard.tellsAppearances = guard.tellsAppearances || mask == appearances;
}

// What a watch tells can be made less only by ending it. This comes before the folders are looked
// at, so that nothing is missed.
void WatchedRoots::releaseTalkative() {
    WatchTree& tree = folders_.tree();
    for (const auto& [watch, guard] : guards_) {
        const auto folder = tree.find(watch);
        if (!guard.tellsAppearances || folder == WatchTree::none || tree.isWatched(folder))
            continue;
        tree.setGuard(folder, false);
        folders_.drop(folder);
    }
}

void WatchedRoots::release(const Guards& before) {
    WatchTree& tree = folders_.tree();
    for (const auto& [watch, guard] : before) {
        const auto folder = tree.find(watch);
        if (guards_.contains(watch) || folder == WatchTree::none) continue;
        tree.setGuard(folder, false);
        if (!tree.isWatched(folder)) folders_.drop(folder);
    }
}

bool WatchedRoots::concerns(int guard, std::string_view name) const {
    const auto found = guards_.find(guard);
    return found != guards_.end() &&
           std::binary_search(found->second.names.begin(), found->second.names.end(), name);
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
