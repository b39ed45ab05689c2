// What changes below folders, as the system tells it: files and folders made, written, removed and
// renamed, and their attributes changed.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Result.h"

namespace tarnbeck {

struct FileEventBatch {
    // What changed, none twice; each path begins with one of the roots, as that was given.
    std::vector<std::string> paths;
    // Events may have been lost: anything below the roots may have changed. There are no paths
    // then.
    bool eventsWereLost = false;

    bool operator==(const FileEventBatch&) const = default;
};

// A source that is open. It is closed when this goes: nothing is delivered from then on, and a
// delivery that runs on another thread has ended.
class FileEventStream {
  public:
    FileEventStream() = default;
    FileEventStream(const FileEventStream&) = delete;
    FileEventStream& operator=(const FileEventStream&) = delete;
    virtual ~FileEventStream() = default;
};

class FileEvents {
  public:
    struct Request {
        std::vector<std::string> roots;  // absolute paths of folders, without trailing slashes
        // Names of folders below which nothing matters: no event from there need be told. They
        // apply to every component of a path, those of the roots included.
        const std::set<std::string, std::less<>>& excludes;
        // Called on a thread of the source's own, and must return soon. The first event comes at
        // once; from then on batches are at least 0.5 seconds apart.
        std::function<void(FileEventBatch)> deliver;
        // Gets a line for the scan log when folders can't be watched. Any thread.
        std::function<void(std::string line)> report;
        // Set to true by whoever no longer wants the stream, from any thread: an opening that is
        // still at work ends early, with a stream that tells nothing. Absent where nobody will.
        std::shared_ptr<std::atomic<bool>> isUnwanted = {};
    };

    FileEvents() = default;
    FileEvents(const FileEvents&) = delete;
    FileEvents& operator=(const FileEvents&) = delete;
    virtual ~FileEvents() = default;

    // Begins to tell what happens from now on; the system's words where it can't be told at all.
    // Blocks while the folders are walked through; never from the main thread. The request is
    // referred to for the time of the call only, its functions are kept.
    virtual Result<std::unique_ptr<FileEventStream>> open(const Request& request) = 0;
};

}  // namespace tarnbeck
