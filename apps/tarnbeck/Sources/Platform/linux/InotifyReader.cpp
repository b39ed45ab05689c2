#include "InotifyReader.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "WatchCapacity.h"
#include "WatchShortage.h"

namespace tarnbeck {
namespace {

constexpr std::chrono::milliseconds pauseBetweenBatches{500};
constexpr std::size_t bufferSize = 65536;
constexpr std::size_t largestEvent = sizeof(inotify_event) + NAME_MAX + 1;
constexpr std::uint32_t ownMask = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;
// Where a path leads depends on what is there, and on who may read it.
constexpr std::uint32_t wayMask = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ATTRIB;

}  // namespace

InotifyReader::InotifyReader(const FileEvents::Request& request, FileDescriptor inotify,
                             FileDescriptor wake)
    : inotify_(std::move(inotify)),
      wake_(std::move(wake)),
      ending_(request.isUnwanted ? request.isUnwanted : std::make_shared<std::atomic<bool>>(false)),
      deliver_(request.deliver),
      report_(request.report),
      pruned_(request.excludes),
      folders_(inotify_, pruned_, *ending_),
      roots_(request.roots, pruned_, folders_),
      buffer_(std::make_unique<std::byte[]>(bufferSize)) {}

void InotifyReader::begin() {
    roots_.follow();
    reportShortage();
}

void InotifyReader::end() {
    *ending_ = true;
    eventfd_write(wake_.get(), 1);
}

void InotifyReader::run() {
    while (!*ending_) {
        if (waitForEvents()) readEvents();
        if (!*ending_ && isDue()) flush();
    }
}

bool InotifyReader::waitForEvents() {
    int timeout = -1;
    if (hasWork()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(due_ - Clock::now());
        timeout = static_cast<int>(std::max<std::int64_t>(left.count(), 0));
    }
    std::array<pollfd, 2> descriptors = {{{inotify_.get(), POLLIN, 0}, {wake_.get(), POLLIN, 0}}};
    return poll(descriptors.data(), descriptors.size(), timeout) > 0 && descriptors[0].revents != 0;
}

// Until the queue is empty, as far as that can be told without another call, or a delivery is due.
void InotifyReader::readEvents() {
    while (readOnce() + largestEvent > bufferSize && !*ending_ && !isDue()) {
    }
}

std::size_t InotifyReader::readOnce() {
    const ssize_t count = read(inotify_.get(), buffer_.get(), bufferSize);
    if (count <= 0) return 0;
    const auto end = static_cast<std::size_t>(count);
    for (std::size_t at = 0; at < end;) {
        inotify_event event{};
        std::memcpy(&event, buffer_.get() + at, sizeof event);
        const char* name = reinterpret_cast<const char*>(buffer_.get() + at + sizeof event);
        handle(event, event.len == 0 ? std::string_view() : std::string_view(name));
        at += sizeof event + event.len;
    }
    return end;
}

void InotifyReader::handle(const inotify_event& event, std::string_view name) {
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        treeIsStale_ = true;
        folders_.batch().noteLoss();
        return;
    }
    const WatchTree& tree = folders_.tree();
    const Folder folder = tree.find(event.wd);
    if (folder == WatchTree::none) return;
    if (name.empty()) {
        handleOwn(folder, event.mask);
        return;
    }
    if (tree.isGuard(folder) && (event.mask & wayMask) != 0) {
        rootsAreStale_ = rootsAreStale_ || roots_.concerns(event.wd, name);
    }
    if (!tree.isWatched(folder)) return;
    folders_.batch().add(folder, name);
    if ((event.mask & IN_ISDIR) != 0) handleFolder(folder, event, name);
}

// What the folder's parent doesn't tell: of others an event of their own is the second one.
void InotifyReader::handleOwn(Folder folder, std::uint32_t mask) {
    const WatchTree& tree = folders_.tree();
    if (tree.isWatched(folder) && tree.parent(folder) == WatchTree::none) {
        folders_.batch().add(folder, {});
    }
    const bool isOnTheWay = tree.isRoot(folder) || tree.isGuard(folder);
    if ((mask & ownMask) == 0 && tree.isWatched(folder)) return;
    rootsAreStale_ = rootsAreStale_ || isOnTheWay;
    // What was hidden below the disk that is gone can be seen again.
    const bool showsAnother = (mask & IN_UNMOUNT) != 0 && tree.parent(folder) != WatchTree::none;
    if (showsAnother) folders_.doubt(tree.parent(folder));
    if ((mask & IN_IGNORED) != 0) {
        folders_.drop(folder);
    } else if ((mask & IN_MOVE_SELF) != 0) {
        handleMoved(folder);
    }
}

void InotifyReader::handleFolder(Folder folder, const inotify_event& event, std::string_view name) {
    if ((event.mask & IN_CREATE) != 0) {
        folders_.adopt(folder, name, WatchedFolders::Findings::told);
    } else if ((event.mask & IN_MOVED_FROM) != 0) {
        if (!pruned_.isExcluded(name)) renames_.left(event.cookie, event.wd, name);
    } else if ((event.mask & IN_MOVED_TO) != 0) {
        if (!renames_.arrived(event.cookie, event.wd, name)) {
            folders_.adopt(folder, name, WatchedFolders::Findings::quiet);
        }
    } else if ((event.mask & IN_ATTRIB) != 0 && folders_.tree().hasUnreadable(folder)) {
        folders_.doubt(folder);
    }
}

void InotifyReader::handleMoved(Folder folder) {
    const WatchTree& tree = folders_.tree();
    const Folder parent = tree.parent(folder);
    if (parent == WatchTree::none) return;  // a root, to be followed by its guards
    const int watch = tree.watch(parent);
    if (const FolderRename* rename = renames_.from(watch, tree.name(folder))) {
        finishMove(folder, *rename);
        renames_.erase(rename);
    } else if (const FolderRename* done = renames_.to(watch, tree.name(folder))) {
        renames_.erase(done);  // a walk has met it at its new place
    } else {
        folders_.doubt(parent);
        folders_.drop(folder);
    }
}

void InotifyReader::finishMove(Folder folder, const FolderRename& rename) {
    constexpr std::string_view gitFolder = ".git";
    const WatchTree& tree = folders_.tree();
    const Folder parent = rename.toWatch < 0 ? WatchTree::none : tree.find(rename.toWatch);
    const bool isInSight = parent != WatchTree::none && tree.isWatched(parent);
    // What is pruned below a folder may depend on its name.
    const bool changesMeaning = rename.fromName == gitFolder || rename.toName == gitFolder;
    if (!isInSight || changesMeaning || pruned_.isPruned(tree.path(parent), rename.toName)) {
        folders_.drop(folder);
        if (isInSight) folders_.adopt(parent, rename.toName, WatchedFolders::Findings::quiet);
    } else {
        folders_.move(folder, parent, rename.toName);
    }
}

bool InotifyReader::hasWork() const {
    return treeIsStale_ || folders_.isWrong() || rootsAreStale_ || folders_.hasDoubts() ||
           !renames_.isEmpty() || !folders_.batch().isEmpty();
}

void InotifyReader::flush() {
    folders_.batch().settle();  // by the names of before the repair
    repair();
    if (*ending_) return;
    reportShortage();
    due_ = Clock::now() + pauseBetweenBatches;
    FileEventBatch batch = folders_.batch().take();
    if (batch.eventsWereLost || !batch.paths.empty()) deliver_(std::move(batch));
}

void InotifyReader::repair() {
    for (const FolderRename& rename : renames_.takeUntold()) {
        const Folder parent = folders_.tree().find(rename.toWatch);
        if (parent == WatchTree::none) continue;
        folders_.adopt(parent, rename.toName, WatchedFolders::Findings::quiet);
    }
    if (std::exchange(treeIsStale_, false) || folders_.isWrong()) {
        renew();
    } else if (rootsAreStale_) {
        roots_.follow();
        rootsAreStale_ = folders_.takeLossOfRoots();
    }
    folders_.reread();
}

// Everything from the beginning; what happened meanwhile is not known.
void InotifyReader::renew() {
    folders_.batch().noteLoss();
    renames_.clear();
    folders_.beginRenewal();
    roots_.follow();
    folders_.endRenewal();
    rootsAreStale_ = folders_.takeLossOfRoots();
}

void InotifyReader::reportShortage() {
    const WatchedFolders::Shortage shortage = folders_.takeShortage();
    if (shortage.missing == 0) return;
    folders_.batch().noteLoss();
    if (report_) {
        report_(
            watchShortageLine(roots_.thoseOf(shortage.folders), shortage.missing, watchLimit()));
    }
}

}  // namespace tarnbeck
