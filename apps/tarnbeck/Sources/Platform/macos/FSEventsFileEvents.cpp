// File events by FSEvents: the system watches whole trees, follows roots that go and come by their
// paths, and gathers events for half a second. A stream has a dispatch queue of its own.
#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <CoreServices/CoreServices.h>
#include <dispatch/dispatch.h>

#include "Paths.h"
#include "SystemFileEvents.h"

namespace tarnbeck {
namespace {

constexpr CFTimeInterval latencySeconds = 0.5;

template <class Reference>
struct Releasing {
    void operator()(Reference reference) const { CFRelease(reference); }
};
template <class Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, Releasing<Reference>>;

// A root as it was given and as the system names it, with its links resolved.
struct Root {
    std::string given;
    std::string real;
};

// What is missing has no links: it is appended to the real path of the nearest folder that exists.
std::string realPathOf(const std::string& path) {
    std::array<char, PATH_MAX> buffer{};
    if (realpath(path.c_str(), buffer.data())) return buffer.data();
    if (path.empty() || path == "/") return path;
    const std::string parent = realPathOf(std::string(parentPath(path)));
    return (parent == "/" ? std::string() : parent) + "/" + std::string(lastPathComponent(path));
}

// `path` as it is called below the root; absent when it lies elsewhere.
std::optional<std::string> asGiven(const Root& root, std::string_view path) {
    if (root.real == "/")
        return std::string(root.given == "/" ? "" : root.given) + std::string(path);
    if (!path.starts_with(root.real)) return std::nullopt;
    const std::string_view below = path.substr(root.real.size());
    if (!below.empty() && !below.starts_with('/')) return std::nullopt;
    return root.given + std::string(below);
}

std::string textOf(CFStringRef string) {
    const CFIndex capacity =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
    std::string text(static_cast<std::size_t>(capacity), '\0');
    if (!CFStringGetCString(string, text.data(), capacity, kCFStringEncodingUTF8)) return {};
    text.resize(text.find('\0'));
    while (text.size() > 1 && text.ends_with('/')) text.pop_back();
    return text;
}

// Absent when a path can't be told to the system.
Owned<CFArrayRef> arrayOf(const std::vector<Root>& roots) {
    CFMutableArrayRef array = CFArrayCreateMutable(kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks);
    Owned<CFArrayRef> owned(array);
    for (const Root& root : roots) {
        const Owned<CFStringRef> path(
            CFStringCreateWithFileSystemRepresentation(kCFAllocatorDefault, root.real.c_str()));
        if (!path) return nullptr;
        CFArrayAppendValue(array, path.get());
    }
    return owned;
}

constexpr FSEventStreamEventFlags lossFlags =
    kFSEventStreamEventFlagMustScanSubDirs | kFSEventStreamEventFlagUserDropped |
    kFSEventStreamEventFlagKernelDropped | kFSEventStreamEventFlagRootChanged;

class FSEventsStream : public FileEventStream {
  public:
    FSEventsStream(std::vector<Root> roots, std::function<void(FileEventBatch)> deliver)
        : roots_(std::move(roots)),
          deliver_(std::move(deliver)),
          queue_(dispatch_queue_create("com.tarnbeck.fsevents", DISPATCH_QUEUE_SERIAL)) {
        dispatch_queue_set_specific(queue_, &queueKey, this, nullptr);
    }

    ~FSEventsStream() override {
        if (stream_) {
            if (isStarted_) FSEventStreamStop(stream_);
            FSEventStreamInvalidate(stream_);
            FSEventStreamRelease(stream_);
        }
        // A delivery that runs is waited for, unless it is the one that closes this.
        if (dispatch_get_specific(&queueKey) != this) {
            dispatch_sync_f(queue_, nullptr, [](void*) {});
        }
        dispatch_release(queue_);
    }

    bool start() {
        const Owned<CFArrayRef> paths = arrayOf(roots_);
        if (!paths) return false;
        FSEventStreamContext context{};
        context.info = this;
        stream_ = FSEventStreamCreate(kCFAllocatorDefault, &FSEventsStream::told, &context,
                                      paths.get(), kFSEventStreamEventIdSinceNow, latencySeconds,
                                      kFSEventStreamCreateFlagFileEvents |
                                          kFSEventStreamCreateFlagNoDefer |
                                          kFSEventStreamCreateFlagUseCFTypes);
        if (!stream_) return false;
        FSEventStreamSetDispatchQueue(stream_, queue_);
        isStarted_ = FSEventStreamStart(stream_);
        return isStarted_;
    }

  private:
    // On the queue. `paths` is an array of strings.
    static void told(ConstFSEventStreamRef, void* self, std::size_t count, void* paths,
                     const FSEventStreamEventFlags* flags, const FSEventStreamEventId*) {
        static_cast<FSEventsStream*>(self)->tell(static_cast<CFArrayRef>(paths),
                                                 {flags, flags + count});
    }

    void tell(CFArrayRef paths, const std::vector<FSEventStreamEventFlags>& flags) {
        const bool eventsWereLost =
            std::any_of(flags.begin(), flags.end(), [](auto each) { return each & lossFlags; });
        FileEventBatch batch{.eventsWereLost = eventsWereLost};
        for (std::size_t index = 0; !eventsWereLost && index < flags.size(); ++index) {
            const auto* string = CFArrayGetValueAtIndex(paths, static_cast<CFIndex>(index));
            addAsGiven(textOf(static_cast<CFStringRef>(string)), batch.paths);
        }
        std::sort(batch.paths.begin(), batch.paths.end());
        batch.paths.erase(std::unique(batch.paths.begin(), batch.paths.end()), batch.paths.end());
        if (eventsWereLost || !batch.paths.empty()) {
            const auto deliver = deliver_;  // the call may close this
            deliver(std::move(batch));
        }
    }

    void addAsGiven(const std::string& path, std::vector<std::string>& paths) const {
        for (const Root& root : roots_) {
            if (auto given = asGiven(root, path)) paths.push_back(std::move(*given));
        }
    }

    static inline char queueKey = 0;

    const std::vector<Root> roots_;
    const std::function<void(FileEventBatch)> deliver_;
    dispatch_queue_t queue_;
    FSEventStreamRef stream_ = nullptr;
    bool isStarted_ = false;
};

class FSEventsFileEvents : public FileEvents {
  public:
    Result<std::unique_ptr<FileEventStream>> open(const Request& request) override {
        std::vector<Root> roots;
        for (const std::string& path : request.roots) roots.push_back({path, realPathOf(path)});
        auto stream = std::make_unique<FSEventsStream>(std::move(roots), request.deliver);
        if (!stream->start()) return Failure{"the system opens no stream of file events"};
        return std::unique_ptr<FileEventStream>(std::move(stream));
    }
};

}  // namespace

std::unique_ptr<FileEvents> makeFileEvents() {
    return std::make_unique<FSEventsFileEvents>();
}

}  // namespace tarnbeck
