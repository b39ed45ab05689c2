// Reads what an inotify descriptor tells, keeps the watches in step with it, and delivers batches.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "FileDescriptor.h"
#include "FileEvents.h"
#include "FolderRenames.h"
#include "PrunedFolders.h"
#include "WatchedFolders.h"
#include "WatchedRoots.h"

struct inotify_event;

namespace tarnbeck {

class InotifyReader {
  public:
    InotifyReader(const FileEvents::Request& request, FileDescriptor inotify, FileDescriptor wake);

    // Sets the watches. Blocks while the folders are walked through.
    void begin();
    // Reads and delivers until it is ended.
    void run();
    // Makes `run` return soon, and walks too. Any thread.
    void end();

  private:
    using Clock = std::chrono::steady_clock;
    using Folder = WatchTree::Folder;

    bool waitForEvents();
    void readEvents();
    std::size_t readOnce();
    void handle(const inotify_event& event, std::string_view name);
    void handleOwn(Folder folder, std::uint32_t mask);
    void handleFolder(Folder folder, const inotify_event& event, std::string_view name);
    void handleMoved(Folder folder);
    void finishMove(Folder folder, const FolderRename& rename);

    bool hasWork() const;
    bool isDue() const { return hasWork() && Clock::now() >= due_; }
    void flush();
    void repair();
    void renew();
    void reportShortage();

    FileDescriptor inotify_;
    FileDescriptor wake_;
    const std::shared_ptr<std::atomic<bool>> ending_;
    std::function<void(FileEventBatch)> deliver_;
    std::function<void(std::string)> report_;
    PrunedFolders pruned_;
    WatchedFolders folders_;
    WatchedRoots roots_;
    FolderRenames renames_;
    std::unique_ptr<std::byte[]> buffer_;
    bool treeIsStale_ = false;
    bool rootsAreStale_ = false;
    Clock::time_point due_;  // no delivery before this
};

}  // namespace tarnbeck
