// File events by inotify: one descriptor, one thread and one descriptor to end it for each stream.
// The thread sleeps as long as nothing happens.
#include <cerrno>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include <sys/eventfd.h>
#include <sys/inotify.h>

#include "FileSystem.h"
#include "InotifyReader.h"
#include "SystemFileEvents.h"
#include "ThreadPriority.h"

namespace tarnbeck {
namespace {

class InotifyStream : public FileEventStream {
  public:
    // Throws `std::system_error` where the system gives no thread.
    explicit InotifyStream(std::shared_ptr<InotifyReader> reader) : reader_(std::move(reader)) {
        thread_ = std::thread([reader = reader_] {
            nameThread("tarnbeck-events");
            reader->run();
        });
    }

    ~InotifyStream() override {
        reader_->end();
        if (thread_.get_id() == std::this_thread::get_id()) {
            thread_.detach();  // closed by a delivery: it ends right after that
        } else {
            thread_.join();
        }
    }

  private:
    std::shared_ptr<InotifyReader> reader_;
    std::thread thread_;
};

class InotifyFileEvents : public FileEvents {
  public:
    Result<std::unique_ptr<FileEventStream>> open(const Request& request) override {
        FileDescriptor inotify(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
        if (!inotify) return Failure{systemErrorText(errno)};
        FileDescriptor wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
        if (!wake) return Failure{systemErrorText(errno)};
        try {
            auto reader =
                std::make_shared<InotifyReader>(request, std::move(inotify), std::move(wake));
            reader->begin();
            return std::unique_ptr<FileEventStream>(
                std::make_unique<InotifyStream>(std::move(reader)));
        } catch (const std::system_error& error) {
            return Failure{error.code().message()};
        }
    }
};

}  // namespace

std::unique_ptr<FileEvents> makeFileEvents() {
    return std::make_unique<InotifyFileEvents>();
}

}  // namespace tarnbeck
