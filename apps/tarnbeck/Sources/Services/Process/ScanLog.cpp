#include "ScanLog.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Dates.h"
#include "FileDescriptor.h"
#include "FileSystem.h"
#include "Paths.h"
#include "Text.h"

namespace tarnbeck {

// The open log file and its size so far. Used by the log's queue alone.
class ScanLog::File {
  public:
    explicit File(std::string path) : path_(std::move(path)) {}

    void writeLine(std::string_view line) {
        // A log that is no longer at its path is another program's affair, or the user's.
        if (!isStillThere()) openHandle();
        rotateIfNeeded(static_cast<std::int64_t>(line.size()));
        append(line);
    }

  private:
    void rotateIfNeeded(std::int64_t upcomingBytes) {
        if (currentSize_ + upcomingBytes <= largestSize) return;
        const std::string rotated = earlierGeneration(path_);
        handle_.close();
        std::remove(rotated.c_str());
        std::rename(path_.c_str(), rotated.c_str());
        openHandle();
    }

    void openHandle() {
        constexpr mode_t forTheUserAlone = 0600;
        currentSize_ = 0;
        handle_ = FileDescriptor(
            open(path_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, forTheUserAlone));
        struct stat information {};
        if (handle_ && fstat(handle_.get(), &information) == 0) currentSize_ = information.st_size;
    }

    // Whether the path still leads to the open file; learns what other programs added to it.
    bool isStillThere() {
        struct stat atPath {};
        struct stat opened {};
        const bool same = handle_ && stat(path_.c_str(), &atPath) == 0 &&
                          fstat(handle_.get(), &opened) == 0 && atPath.st_ino == opened.st_ino &&
                          atPath.st_dev == opened.st_dev;
        if (same) currentSize_ = std::max<std::int64_t>(currentSize_, opened.st_size);
        return same;
    }

    void append(std::string_view line) {
        if (!handle_ || writeWhole(line)) return;
        openHandle();
        if (handle_) writeWhole(line);
    }

    // All of the line or nothing of it.
    bool writeWhole(std::string_view line) {
        ssize_t count = 0;
        do {
            count = ::write(handle_.get(), line.data(), line.size());
        } while (count < 0 && errno == EINTR);
        if (count == std::ssize(line)) {
            currentSize_ += count;
            return true;
        }
        if (count > 0) takeBack(count);
        return false;
    }

    // A disk that filled up in the middle of a line keeps no half of it, unless somebody else has
    // written behind it already.
    void takeBack(ssize_t count) {
        struct stat information {};
        if (fstat(handle_.get(), &information) != 0) return;
        const off_t behind = lseek(handle_.get(), 0, SEEK_CUR);
        if (behind != information.st_size) return;
        [[maybe_unused]] const int result = ftruncate(handle_.get(), behind - count);
    }

    const std::string path_;
    FileDescriptor handle_;
    std::int64_t currentSize_ = 0;
};

ScanLog::ScanLog(Options options, const Clock& clock, WorkQueues& queues)
    : options_(std::move(options)), clock_(clock), queue_(queues.serial("com.tarnbeck.scan-log")) {}

ScanLog::~ScanLog() {
    drain();
}

void ScanLog::write(std::string message) {
    const WallTime time = clock_.wallNow();
    const auto observers = [this] {
        const std::lock_guard lock(observersMutex_);
        return observers_.current();
    }();
    Observers::tell(observers, message);
    queue_->post([this, time, message = std::move(message)] {
        if (!file_) file_ = std::make_shared<File>(location());
        file_->writeLine(fmt::format("[{}] {}\n", iso8601(time), replacingInvalidUtf8(message)));
    });
}

const std::string& ScanLog::location() const {
    std::call_once(locationOnce_, [this] {
        if (options_.logURLOverride) {
            location_ = *options_.logURLOverride;
            return;
        }
        const std::string folder = options_.home + "/.config/tarnbeck";
        createDirectories(folder, 0700);
        location_ = folder + "/scan.log";
    });
    return location_;
}

std::string ScanLog::earlierGeneration(const std::string& location) {
    return std::filesystem::path(location).replace_extension("log.1");
}

void ScanLog::drain() {
    queue_->drain();
}

ScanLog::Observers::Token ScanLog::observe(Observers::Observer observer) {
    const std::lock_guard lock(observersMutex_);
    return observers_.add(std::move(observer));
}

}  // namespace tarnbeck
