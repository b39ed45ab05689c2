// What happened since the last delivery, in little memory however much it was: a path is kept as
// its folder and its name until its text is asked for.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/unordered/unordered_flat_set.hpp>

#include "FileEvents.h"
#include "PrunedFolders.h"
#include "WatchTree.h"

namespace tarnbeck {

class PendingBatch {
  public:
    // Beyond this many paths that matter the batch says instead that events were lost. Of paths
    // that end in an excluded name as many are told, and the rest is dropped.
    static constexpr std::size_t mostPaths = 512;

    // Both are referred to.
    PendingBatch(WatchTree& tree, const PrunedFolders& pruned) : tree_(tree), pruned_(pruned) {}

    // `name` in the folder, or the folder itself where that is empty.
    void add(WatchTree::Folder folder, std::string_view name);
    void addPath(const std::string& path);
    void noteLoss();

    bool isEmpty() const { return entries_.empty() && paths_.empty() && !eventsWereLost_; }
    // Turns what was gathered into texts, by the places that the folders have now.
    void settle();
    // All of it; the batch is empty afterwards.
    FileEventBatch take();

  private:
    using Entry = std::pair<WatchTree::Folder, std::string>;
    using EntryView = std::pair<WatchTree::Folder, std::string_view>;
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const EntryView& entry) const;
        std::size_t operator()(const Entry& entry) const {
            return (*this)(EntryView(entry.first, entry.second));
        }
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(const auto& left, const auto& right) const {
            return left.first == right.first && left.second == right.second;
        }
    };

    void insert(WatchTree::Folder folder, std::string_view name);
    void clear();

    WatchTree& tree_;
    const PrunedFolders& pruned_;
    boost::unordered_flat_set<Entry, Hash, Equal> entries_;  // their folders are held
    std::size_t excludedEntries_ = 0;
    std::vector<std::string> paths_;
    bool eventsWereLost_ = false;
};

}  // namespace tarnbeck
