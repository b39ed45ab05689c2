#include "FileChangeEvent.h"

#include <array>
#include <cerrno>
#include <cstring>

#include <sys/inotify.h>
#include <unistd.h>

#include "FileDescriptor.h"
#include "FileSystem.h"
#include "Paths.h"

namespace tarnbeck {
namespace {

class InotifyFileChangeEvent : public FileChangeEvent {
  public:
    InotifyFileChangeEvent(std::string path, FileDescriptor events)
        : path_(std::move(path)), events_(std::move(events)) {}

    // The watch on the folder; negative when there is none to be had.
    int watchFolder() {
        const std::string folder(parentPath(path_));
        folderWatch_ = inotify_add_watch(events_.get(), folder.c_str(),
                                         IN_CREATE | IN_MODIFY | IN_MOVE | IN_DELETE |
                                             IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR);
        return folderWatch_;
    }

    int descriptor() const override { return events_.get(); }

    bool rearm() override {
        forgetEvents();
        // A link leads to a file of another folder, which has to be watched by itself.
        inotify_add_watch(events_.get(), path_.c_str(), IN_MODIFY);
        return !folderHasGone_;
    }

  private:
    void forgetEvents() {
        alignas(inotify_event) std::array<char, 4096> buffer{};
        while (true) {
            const ssize_t count = read(events_.get(), buffer.data(), buffer.size());
            if (count <= 0) return;
            look(buffer.data(), buffer.data() + count);
        }
    }

    void look(const char* at, const char* end) {
        while (at < end) {
            inotify_event event{};
            std::memcpy(&event, at, sizeof event);
            constexpr std::uint32_t gone = IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED | IN_UNMOUNT;
            folderHasGone_ |= event.wd == folderWatch_ && (event.mask & gone) != 0;
            at += sizeof event + event.len;
        }
    }

    const std::string path_;
    const FileDescriptor events_;
    int folderWatch_ = -1;
    bool folderHasGone_ = false;
};

}  // namespace

Result<std::unique_ptr<FileChangeEvent>> FileChangeEvent::open(const std::string& path) {
    FileDescriptor events(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (!events) return Failure{systemErrorText(errno)};
    auto event = std::make_unique<InotifyFileChangeEvent>(path, std::move(events));
    if (event->watchFolder() < 0) return Failure{systemErrorText(errno)};
    return std::unique_ptr<FileChangeEvent>(std::move(event));
}

}  // namespace tarnbeck
