// The roots, which may be missing, be renamed or removed with folders above them, and come back.
// One thread at a time.
//
// Each folder and link on the way to a root is watched, but as a rule only for its own moves, so
// that what else happens beside the roots wakes nobody. Two folders tell more: the one that a root
// lies in tells what is removed, because a folder that somebody works in doesn't tell its own
// removal; and the nearest one above a root that is missing tells what appears.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <boost/unordered/unordered_flat_map.hpp>

#include "PathTrail.h"
#include "PrunedFolders.h"
#include "WatchedFolders.h"

namespace tarnbeck {

class WatchedRoots {
  public:
    // Roots below an excluded folder are left out: nothing that happens there would count.
    WatchedRoots(std::vector<std::string> paths, const PrunedFolders& pruned,
                 WatchedFolders& folders);

    // Watches the roots that exist where their paths lead now, and the way to the others as far as
    // it exists. Each watch is set before what it stands for is looked at, so that a change in
    // between is an event. Tells what appeared and vanished since the call before.
    void follow();

    // Whether `name` in a guard is a part of the way to a root.
    bool concerns(int guard, std::string_view name) const;

    // The paths of those roots that lie above one of `folders` or are one of them.
    std::vector<std::string> thoseOf(const std::vector<std::string>& folders) const;

  private:
    struct Root {
        std::string path;
        int watch = -1;
    };
    struct Guard {
        std::vector<std::string> names;  // those that matter in it, sorted
        bool tellsAppearances = false;
    };
    using Guards = boost::unordered_flat_map<int, Guard>;  // by watch

    void followOne(Root& root);
    // The root's watch; below 0 while it can't be watched.
    int reach(const Root& root);
    PathStep guardTheWay(const Root& root);
    void guardName(const PathStep& step, std::uint32_t mask);
    void releaseTalkative();
    void release(const Guards& before);

    WatchedFolders& folders_;
    std::vector<Root> roots_;
    Guards guards_;
    std::unordered_map<std::string, int> watchedWays_;  // during one call of `follow`
    bool isFirst_ = true;
};

}  // namespace tarnbeck
