#include "FileChangeEvent.h"

#include <array>
#include <cerrno>
#include <ctime>

#include <fcntl.h>
#include <sys/event.h>
#include <unistd.h>

#include "FileDescriptor.h"
#include "FileSystem.h"
#include "Paths.h"

namespace tarnbeck {
namespace {

// A kernel queue on the folder, for names that come and go, and on the file that has the name now.
class KqueueFileChangeEvent : public FileChangeEvent {
  public:
    KqueueFileChangeEvent(std::string path, FileDescriptor queue, FileDescriptor folder)
        : path_(std::move(path)), queue_(std::move(queue)), folder_(std::move(folder)) {}

    bool watchFolder() { return watch(folder_, NOTE_WRITE | NOTE_DELETE | NOTE_RENAME); }

    int descriptor() const override { return queue_.get(); }

    bool rearm() override {
        forgetEvents();
        // Closing the former file takes its events out of the queue.
        file_ = FileDescriptor(::open(path_.c_str(), O_EVTONLY | O_CLOEXEC));
        if (file_) watch(file_, NOTE_WRITE | NOTE_EXTEND | NOTE_DELETE | NOTE_RENAME);
        return !folderHasGone_;
    }

  private:
    bool watch(const FileDescriptor& what, unsigned notes) {
        struct kevent change {};
        EV_SET(&change, what.get(), EVFILT_VNODE, EV_ADD | EV_CLEAR, notes, 0, nullptr);
        return kevent(queue_.get(), &change, 1, nullptr, 0, nullptr) == 0;
    }

    void forgetEvents() {
        std::array<struct kevent, 16> events{};
        const timespec atOnce{};
        int count = 0;
        do {
            count = kevent(queue_.get(), nullptr, 0, events.data(), static_cast<int>(events.size()),
                           &atOnce);
            for (int index = 0; index < count; ++index) {
                const auto& event = events[static_cast<std::size_t>(index)];
                const bool ofFolder = event.ident == static_cast<std::uintptr_t>(folder_.get());
                const bool gone = (event.fflags & (NOTE_DELETE | NOTE_RENAME)) != 0;
                folderHasGone_ |= ofFolder && gone;
            }
        } while (count > 0);
    }

    const std::string path_;
    const FileDescriptor queue_;
    const FileDescriptor folder_;
    FileDescriptor file_;
    bool folderHasGone_ = false;
};

}  // namespace

Result<std::unique_ptr<FileChangeEvent>> FileChangeEvent::open(const std::string& path) {
    FileDescriptor queue(kqueue());
    if (!queue) return Failure{systemErrorText(errno)};
    fcntl(queue.get(), F_SETFD, FD_CLOEXEC);
    const std::string parent(parentPath(path));
    FileDescriptor folder(::open(parent.c_str(), O_EVTONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return Failure{systemErrorText(errno)};
    auto event = std::make_unique<KqueueFileChangeEvent>(path, std::move(queue), std::move(folder));
    if (!event->watchFolder()) return Failure{systemErrorText(errno)};
    return std::unique_ptr<FileChangeEvent>(std::move(event));
}

}  // namespace tarnbeck
