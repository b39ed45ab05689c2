// Which folders are not looked into at all.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include <boost/unordered/unordered_flat_set.hpp>

#include "TextHash.h"

namespace tarnbeck {

// Pruned are folders of an excluded name, and what is big, often written and of no meaning to the
// state of a repository: in a folder ".git", "objects", "lfs", "annex" and "fsmonitor--daemon", and
// the same in the git folders of submodules (below ".git/modules", whatever their depth) and in
// those of linked worktrees. A branch, a worktree or a submodule may bear such a name itself; those
// are kept. One thread at a time; the constructor copies.
class PrunedFolders {
  public:
    explicit PrunedFolders(const std::set<std::string, std::less<>>& excludes);

    bool isExcluded(std::string_view name) const { return excludes_.contains(name); }
    // True of a path one of whose components is excluded.
    bool isBelowExcluded(std::string_view path) const;
    // Whether the folder `name` in `parent` is pruned. Asks the disk only where a submodule may
    // bear the name.
    bool isPruned(const std::string& parent, std::string_view name) const;

  private:
    boost::unordered_flat_set<std::string, TextHash, std::equal_to<>> excludes_;
};

}  // namespace tarnbeck
