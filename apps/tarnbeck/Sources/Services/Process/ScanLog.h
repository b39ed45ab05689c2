// The diagnostic log, `.config/tarnbeck/scan.log` under the user's home: one line a message,
// "[2026-03-01T12:00:00Z] message". At 8 MiB it moves to `scan.log.1`, which it replaces.
//
// Several programs may write to the same file: it is opened for appending, and each line goes out
// in one write. Errors lose a line and are otherwise without consequence.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "Clock.h"
#include "ObserverList.h"
#include "WorkQueues.h"

namespace tarnbeck {

class ScanLog {
  public:
    static constexpr std::int64_t largestSize = 8'388'608;  // bytes

    struct Options {
        std::string home;
        std::optional<std::string> logURLOverride = {};  // a path that takes precedence
    };

    // `clock` and `queues` must outlive the log.
    ScanLog(Options options, const Clock& clock, WorkQueues& queues);
    // Waits until all lines are written.
    ~ScanLog();
    ScanLog(const ScanLog&) = delete;
    ScanLog& operator=(const ScanLog&) = delete;

    // Takes the time and returns at once; never fails. Any thread.
    void write(std::string message);

    // Where the lines go. Creates the folder the first time. Any thread.
    const std::string& location() const;

    // Where the lines are that were in the log at `location` before it became too large.
    static std::string earlierGeneration(const std::string& location);

    // Waits until all lines written so far are on disk. Not from the log's own queue.
    void drain();

    // Called with each message, on the thread that writes it, as long as the returned token lives;
    // a call that began before on another thread may still be running when the token has gone.
    using Observers = ObserverList<std::string_view>;
    [[nodiscard]] Observers::Token observe(Observers::Observer observer);

  private:
    class File;

    const Options options_;
    const Clock& clock_;
    mutable std::once_flag locationOnce_;
    mutable std::string location_;
    std::mutex observersMutex_;
    Observers observers_;         // guarded by `observersMutex_`
    std::shared_ptr<File> file_;  // touched on the queue only
    std::shared_ptr<SerialQueue> queue_;
};

}  // namespace tarnbeck
