#include "WatchedFolders.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <utility>

#include <sys/inotify.h>

#include "Paths.h"

namespace tarnbeck {
namespace {

constexpr std::uint32_t folderMask = IN_CREATE | IN_DELETE | IN_MODIFY | IN_ATTRIB | IN_MOVED_FROM |
                                     IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR |
                                     IN_EXCL_UNLINK;

// Of a folder that could not be read: whether another attempt may tell more. It may have another
// name by now.
bool mayPass(int error) {
    return error == EMFILE || error == ENFILE || error == ENOMEM || error == ENOENT ||
           error == ENOTDIR;
}

}  // namespace

int WatchedFolders::addWatch(const std::string& path, std::uint32_t mask) {
    return inotify_add_watch(inotify_.get(), path.c_str(), mask);
}

int WatchedFolders::watchGuard(const std::string& path, std::uint32_t mask) {
    const int watch = addWatch(path, mask | IN_MASK_ADD | IN_DONT_FOLLOW);
    if (watch < 0) return watch;
    Folder folder = tree_.find(watch);
    if (folder == WatchTree::none) folder = tree_.add(watch, WatchTree::none, {});
    tree_.setGuard(folder, true);
    return watch;
}

int WatchedFolders::watchRoot(const std::string& path) {
    const int watch = addWatch(path, folderMask);
    if (watch < 0) {
        if (errno == ENOSPC) noteShortage({path});
        return watch;
    }
    const Folder folder = topOf(watch, path);
    if (tree_.generation(folder) == generation_) return watch;
    tree_.setGeneration(folder, generation_);
    walk(folder);
    return watch;
}

WatchTree::Folder WatchedFolders::topOf(int watch, const std::string& path) {
    Folder folder = tree_.find(watch);
    if (folder == WatchTree::none) folder = tree_.add(watch, WatchTree::none, {});
    tree_.addRootPath(folder, path);
    tree_.setWatched(folder);
    return folder;
}

void WatchedFolders::leaveRoot(int watch, const std::string& path) {
    const Folder folder = tree_.find(watch);
    if (folder == WatchTree::none) return;
    tree_.removeRootPath(folder, path);
    if (!tree_.isRoot(folder) && tree_.parent(folder) == WatchTree::none) drop(folder);
}

void WatchedFolders::walk(Folder top) {
    std::vector<Folder> toList{top};
    while (!toList.empty() && !ending_) {
        const Folder folder = toList.back();
        toList.pop_back();
        list(folder, Findings::quiet, toList);
    }
}

// As `walk`, in the middle of changes: another folder may have been read in place of one.
void WatchedFolders::walkChecking(Folder top, Findings findings) {
    std::vector<Folder> toList{top};
    while (!toList.empty() && !ending_) {
        const Folder folder = toList.back();
        toList.pop_back();
        list(folder, findings, toList);
        if (!isWhereItShouldBe(folder)) noteMisplaced(folder);
    }
}

void WatchedFolders::list(Folder folder, Findings findings, std::vector<Folder>& toList) {
    const std::string path = tree_.path(folder);
    std::string child = path;
    if (!child.ends_with('/')) child += '/';
    const std::size_t length = child.size();
    const auto links =
        tree_.isRoot(folder) ? FolderReader::Links::follow : FolderReader::Links::never;
    const int error = reader_.read(path, links, [&](std::string_view name, bool isFolder) {
        if (findings == Findings::told) batch_.add(folder, name);
        if (!isFolder || pruned_.isPruned(path, name)) return;
        child.resize(length);
        child += name;
        const Folder found = watchChild(folder, name, child);
        if (found != WatchTree::none) toList.push_back(found);
    });
    if (mayPass(error)) doubt(folder);
}

// The folder where it is still to be listed.
WatchTree::Folder WatchedFolders::watchChild(Folder parent, std::string_view name,
                                             std::string& path) {
    const int watch = addWatch(path, folderMask | IN_DONT_FOLLOW);
    if (watch < 0) {
        noteFailure(parent, path);
        return WatchTree::none;
    }
    const Folder known = tree_.find(watch);
    if (known != WatchTree::none) return place(known, parent, name);
    const Folder folder = tree_.add(watch, parent, name);
    tree_.setWatched(folder);
    tree_.setGeneration(folder, generation_);
    return folder;
}

// A folder that has a watch was found here.
WatchTree::Folder WatchedFolders::place(Folder known, Folder parent, std::string_view name) {
    const bool isSeen = tree_.isWatched(known) && tree_.generation(known) == generation_;
    const bool isBelowItself = tree_.isWithin(parent, known);
    if (!isBelowItself && (tree_.parent(known) == WatchTree::none || !isSeen)) {
        tree_.move(known, parent, name);
        tree_.setWatched(known);
        tree_.setGeneration(known, generation_);
        return isSeen ? WatchTree::none : known;
    }
    if (tree_.isAt(known, parent, name)) return WatchTree::none;
    // It is at two places: mounted twice, or moved while this goes on. Events tell the latter, but
    // not where it went if that place was not watched yet.
    if (!rereading_) {
        doubt(parent);
    } else if (!isWhereItShouldBe(known)) {
        if (isBelowItself) {
            isWrong_ = true;
        } else {
            move(known, parent, name);
        }
    }
    return WatchTree::none;
}

// Whether the path of the folder still leads to it.
bool WatchedFolders::isWhereItShouldBe(Folder folder) {
    // Of a folder that is watched this changes nothing.
    constexpr std::uint32_t probe = IN_DELETE_SELF | IN_MASK_ADD | IN_ONLYDIR;
    const std::uint32_t links = tree_.isRoot(folder) ? 0 : IN_DONT_FOLLOW;
    const int watch = addWatch(tree_.path(folder), probe | links);
    if (watch >= 0 && tree_.find(watch) == WatchTree::none) {
        inotify_rm_watch(inotify_.get(), watch);
    }
    return watch == tree_.watch(folder);
}

void WatchedFolders::noteFailure(Folder parent, const std::string& path) {
    switch (errno) {
        case ENOSPC:
            noteShortage(tree_.paths(parent, lastPathComponent(path)));
            break;
        case EACCES:
            tree_.setUnreadable(parent);
            break;
        case ENOENT:
        case ENOTDIR:
        case ENOMEM:
            // Gone, or its parent has another name by now that is not known yet. The second time it
            // was listed a moment ago: where it is not gone, that move is still to be told.
            if (rereading_) {
                noteMisplaced(parent);
            } else {
                doubt(parent);
            }
            break;
        default:
            break;
    }
}

WatchedFolders::Shortage WatchedFolders::takeShortage() {
    countsShortage_ = countsShortage_ && shortage_.missing == 0;
    return std::exchange(shortage_, {});
}

void WatchedFolders::noteShortage(std::vector<std::string> paths) {
    const bool isKnown = !shortage_.folders.empty() && shortage_.folders.back() == paths.back();
    if (!countsShortage_ || isKnown) return;
    shortage_.missing += countFolders(paths.front());
    std::move(paths.begin(), paths.end(), std::back_inserter(shortage_.folders));
}

std::int64_t WatchedFolders::countFolders(const std::string& top) {
    std::vector<std::string> toList{top};
    std::int64_t count = 0;
    FolderReader reader;
    for (; !toList.empty() && !ending_; ++count) {
        const std::string path = std::move(toList.back());
        toList.pop_back();
        reader.read(path, FolderReader::Links::never, [&](std::string_view name, bool isFolder) {
            if (isFolder && !pruned_.isPruned(path, name)) toList.push_back(joinedPath(path, name));
        });
    }
    return count;
}

void WatchedFolders::adopt(Folder parent, std::string_view name, Findings findings) {
    const std::string path = tree_.path(parent);
    if (path.empty() || pruned_.isPruned(path, name)) return;
    if (!isWhereItShouldBe(parent)) {
        noteMisplaced(parent);
        return;
    }
    std::string child = joinedPath(path, name);
    const Folder folder = watchChild(parent, name, child);
    if (folder != WatchTree::none) walkChecking(folder, findings);
}

void WatchedFolders::move(Folder folder, Folder parent, std::string_view name) {
    if (tree_.isWithin(parent, folder)) {
        isWrong_ = true;
        return;
    }
    tree_.move(folder, parent, name);
    doubtful_.insert(doubtful_.end(), misplaced_.begin(), misplaced_.end());
    misplaced_.clear();
}

void WatchedFolders::drop(Folder folder) {
    tree_.remove(folder, [this](Folder each) {
        misplaced_.erase(tree_.watch(each));
        inotify_rm_watch(inotify_.get(), tree_.watch(each));  // fails where the system was first
        lostRoots_ = lostRoots_ || tree_.isRoot(each) || tree_.isGuard(each);
    });
}

void WatchedFolders::reread() {
    rereading_ = true;
    for (const int watch : std::exchange(doubtful_, {})) {
        const Folder folder = tree_.find(watch);
        if (folder == WatchTree::none || !tree_.isWatched(folder)) continue;
        if (!isWhereItShouldBe(folder)) {
            noteMisplaced(folder);
            continue;
        }
        std::vector<Folder> found;
        list(folder, Findings::quiet, found);
        if (!isWhereItShouldBe(folder)) noteMisplaced(folder);
        for (const Folder each : found) {
            batch_.add(each, {});
            walkChecking(each, Findings::told);
        }
    }
    rereading_ = false;
}

void WatchedFolders::beginRenewal() {
    ++generation_;
    doubtful_.clear();
    misplaced_.clear();
    isWrong_ = false;
}

void WatchedFolders::endRenewal() {
    std::vector<int> unseen;
    tree_.forEach([&](Folder folder) {
        const bool isSeen = !tree_.isWatched(folder) || tree_.generation(folder) == generation_;
        if (!isSeen) unseen.push_back(tree_.watch(folder));
    });
    for (const int watch : unseen) {
        const Folder folder = tree_.find(watch);
        if (folder != WatchTree::none) drop(folder);
    }
}

}  // namespace tarnbeck
