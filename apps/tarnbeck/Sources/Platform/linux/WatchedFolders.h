// The folders that are watched, kept the same as those on the disk: walks through them, sets the
// watches, and follows folders that are made, moved and removed. One thread at a time.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/unordered/unordered_flat_set.hpp>

#include "FileDescriptor.h"
#include "FolderReader.h"
#include "PendingBatch.h"
#include "PrunedFolders.h"
#include "WatchTree.h"

namespace tarnbeck {

class WatchedFolders {
  public:
    using Folder = WatchTree::Folder;
    // What is told of that which is found below a folder: nothing, or all of it.
    enum class Findings { quiet, told };

    // What could not be watched because the user's watches were used up.
    struct Shortage {
        std::vector<std::string> folders;  // the topmost ones, under each path that they have
        std::int64_t missing = 0;          // watches, those below them included
    };

    // All are referred to. Walks end early once `ending` is true.
    WatchedFolders(const FileDescriptor& inotify, const PrunedFolders& pruned,
                   const std::atomic<bool>& ending)
        : inotify_(inotify), pruned_(pruned), ending_(ending), batch_(tree_, pruned) {}
    WatchedFolders(const WatchedFolders&) = delete;
    WatchedFolders& operator=(const WatchedFolders&) = delete;

    WatchTree& tree() { return tree_; }
    PendingBatch& batch() { return batch_; }
    const PendingBatch& batch() const { return batch_; }

    // A watch for the events `mask`, besides those that it may be watched for already, on a folder
    // or link on the way to a root; below 0 where there is none to be had.
    int watchGuard(const std::string& path, std::uint32_t mask);
    // A watch on a root and on all below it, under `path` besides other names that it may have.
    // Below 0 where there is no such folder to be read.
    int watchRoot(const std::string& path);
    // The root is no longer found under `path`.
    void leaveRoot(int watch, const std::string& path);

    // There is a folder `name` in `parent`: watches it and all below it.
    void adopt(Folder parent, std::string_view name, Findings findings);
    // The folder went to another place that is watched, or out of sight.
    void move(Folder folder, Folder parent, std::string_view name);
    void drop(Folder folder);

    // What the tree says of the folder may be wrong; it is read again by `reread`. Where its path
    // leads elsewhere that waits for the next move, which will have been the reason.
    void doubt(Folder folder) { doubtful_.push_back(tree_.watch(folder)); }
    bool hasDoubts() const { return !doubtful_.empty(); }
    void reread();

    // The tree contradicts what was found; only a renewal helps.
    bool isWrong() const { return isWrong_; }
    // Until `endRenewal`, each root that is watched is walked through anew; what was not seen
    // then is dropped.
    void beginRenewal();
    void endRenewal();

    // True once after a root, or a folder on the way to one, went out of the tree.
    bool takeLossOfRoots() { return std::exchange(lostRoots_, false); }

    // What was missing up to the first call that finds some; it is not counted again after that.
    Shortage takeShortage();

  private:
    int addWatch(const std::string& path, std::uint32_t mask);
    void walk(Folder top);
    void walkChecking(Folder top, Findings findings);
    void list(Folder folder, Findings findings, std::vector<Folder>& toList);
    Folder watchChild(Folder parent, std::string_view name, std::string& path);
    Folder place(Folder known, Folder parent, std::string_view name);
    bool isWhereItShouldBe(Folder folder);
    // To be doubted after the next move, which will be the reason.
    void noteMisplaced(Folder folder) { misplaced_.insert(tree_.watch(folder)); }
    void noteFailure(Folder parent, const std::string& path);
    void noteShortage(std::vector<std::string> paths);
    std::int64_t countFolders(const std::string& top);
    Folder topOf(int watch, const std::string& path);

    const FileDescriptor& inotify_;
    const PrunedFolders& pruned_;
    const std::atomic<bool>& ending_;
    WatchTree tree_;
    PendingBatch batch_;
    FolderReader reader_;
    std::vector<int> doubtful_;                 // watches
    boost::unordered_flat_set<int> misplaced_;  // watches of those whose paths lead elsewhere
    std::uint32_t generation_ = 1;
    bool rereading_ = false;
    bool lostRoots_ = false;
    bool isWrong_ = false;
    Shortage shortage_;
    bool countsShortage_ = true;
};

}  // namespace tarnbeck
