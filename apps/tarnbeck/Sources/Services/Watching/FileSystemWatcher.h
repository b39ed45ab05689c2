// What of the raw stream of file events matters, and when it is told: paths with an excluded
// component are dropped, a burst ends in one call after a stretch of quiet, and too many paths
// become "anything may have changed".
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "FileEvents.h"
#include "MainLoop.h"
#include "ScanLog.h"
#include "WeakAnchor.h"
#include "WorkQueues.h"

namespace tarnbeck {

// Main thread, unless it says otherwise. Its rules run on a serial queue of its own.
class FileSystemWatcher {
  public:
    using Names = std::set<std::string, std::less<>>;
    // Gets the paths that changed, in no order, none twice; an empty list says that too much has
    // changed to be told. Called on the watcher's queue.
    using Callback = std::function<void(std::vector<std::string> paths)>;

    // All must outlive the watcher and what it still has on its queue.
    struct Services {
        MainLoop& loop;
        WorkQueues& queues;
        ScanLog& log;
        FileEvents& events;
        // Gets one line without a line feed, when events can't be had; on the watcher's queue.
        std::function<void(std::string_view message)> report;
    };
    struct Options {
        std::chrono::nanoseconds debounceInterval;  // of quiet before the callback
        Names excludes;
        Callback callback;
    };

    // Names of folders and files below which nothing matters. ".git" is not among them: HEAD, refs
    // and the index move there.
    static const Names& defaultExcludes();

    // True when a component of the path is an excluded name. Pure; any thread.
    static bool isExcluded(std::string_view path, const Names& excludes);

    FileSystemWatcher(Services services, Options options);
    ~FileSystemWatcher();
    FileSystemWatcher(const FileSystemWatcher&) = delete;
    FileSystemWatcher& operator=(const FileSystemWatcher&) = delete;

    // Watches these folders (absolute paths) and no others from now on. Returns at once. What was
    // about to be told of the folders watched before is dropped.
    void watch(std::vector<std::string> paths);
    // Watches nothing.
    void stop();
    // Runs the task on the watcher's queue, behind what was asked for before.
    void perform(Task task);

  private:
    class Rules;

    void restartDebounce(int generation);

    MainLoop& loop_;
    const std::chrono::nanoseconds debounceInterval_;
    std::shared_ptr<SerialQueue> queue_;
    std::shared_ptr<Rules> rules_;  // touched on the queue only
    // Tells an opening that may be at work on the queue that nobody waits for it any more.
    std::shared_ptr<std::atomic<bool>> streamIsUnwanted_ =
        std::make_shared<std::atomic<bool>>(false);
    Timer debounceTimer_;
    WeakAnchor<FileSystemWatcher> anchor_{*this};
};

}  // namespace tarnbeck
