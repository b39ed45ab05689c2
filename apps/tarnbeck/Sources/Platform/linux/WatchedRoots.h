// The roots, which may be missing, be renamed or removed with folders above them, and come back:
// watches every folder whose change can lead their paths elsewhere. One thread at a time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <boost/unordered/unordered_flat_map.hpp>

#include "PrunedFolders.h"
#include "WatchedFolders.h"

namespace tarnbeck {

class WatchedRoots {
  public:
    // Roots below an excluded folder are left out: nothing that happens there would count.
    WatchedRoots(std::vector<std::string> paths, const PrunedFolders& pruned,
                 WatchedFolders& folders);

    // Watches the roots that exist where their paths lead now, and the nearest folders above those
    // that don't. Each watch is set before what it stands for is looked at, so that a change in
    // between is an event. Tells what appeared and vanished since the call before.
    void follow();

    // Whether `name` in a folder that is a guard is a part of the way to a root.
    bool concerns(int guard, std::string_view name) const;

    // The paths of those roots that lie above one of `folders` or are one of them.
    std::vector<std::string> thoseOf(const std::vector<std::string>& folders) const;

  private:
    struct Root {
        std::string path;
        int watch = -1;
    };
    // The names that matter, sorted, in each folder on the way to a root, by its watch.
    using Guards = boost::unordered_flat_map<int, std::vector<std::string>>;

    void guardAll();
    void followOne(Root& root);
    void release(const Guards& before);

    WatchedFolders& folders_;
    std::vector<Root> roots_;
    Guards guards_;
    bool isFirst_ = true;
};

}  // namespace tarnbeck
