// The renames of folders whose events have not all come yet. The system tells one as up to three
// events: the old place, the new place, and (by the folder's own watch) that it moved. Other events
// may come in between. One thread at a time.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnbeck {

struct FolderRename {
    std::uint32_t cookie = 0;  // common to the events of one rename
    int fromWatch = -1;        // of the folder that it was in
    std::string fromName;
    int toWatch = -1;  // below 0 as long as it is in no folder that is watched
    std::string toName;
    bool isOld = false;
};

class FolderRenames {
  public:
    void left(std::uint32_t cookie, int watch, std::string_view name);
    // False when it comes from where nothing is watched.
    bool arrived(std::uint32_t cookie, int watch, std::string_view name);

    // The latest rename that took a folder away from a place or to it; null when none is known.
    const FolderRename* from(int watch, std::string_view name) const;
    const FolderRename* to(int watch, std::string_view name) const;
    void erase(const FolderRename* rename);

    // Those that arrived although the folder itself has told nothing so far, each once. What was
    // there at the call before already is given up: its folder has no watch.
    std::vector<FolderRename> takeUntold();
    bool isEmpty() const { return renames_.empty(); }
    void clear() { renames_.clear(); }

  private:
    const FolderRename* latest(const auto& matches) const {
        const auto found = std::find_if(renames_.rbegin(), renames_.rend(), matches);
        return found == renames_.rend() ? nullptr : &*found;
    }

    std::vector<FolderRename> renames_;  // few: events of one rename come close together
};

}  // namespace tarnbeck
