#include "FileSystemWatcher.h"

#include <unordered_set>
#include <utility>

#include "Text.h"

namespace tarnbeck {
namespace {

constexpr std::size_t mostPendingPaths = 256;

}  // namespace

// What the watcher knows between two events. On the watcher's queue only.
class FileSystemWatcher::Rules : public std::enable_shared_from_this<Rules> {
  public:
    struct Parts {
        ScanLog& log;
        FileEvents& events;
        std::function<void(std::string_view)> report;
        Names excludes;
        Callback callback;
        std::weak_ptr<SerialQueue> queue;  // whose tasks hold the rules
        // Asks that `deliver` is called with this number when the quiet has lasted. Any thread.
        std::function<void(int generation)> askForDelivery;
    };

    explicit Rules(Parts parts) : parts_(std::move(parts)) {}

    using Unwanted = std::shared_ptr<std::atomic<bool>>;

    void watch(const std::vector<std::string>& paths, const Unwanted& unwanted) {
        stop();
        if (paths.empty() || *unwanted) return;
        FileEvents::Request request{.roots = paths, .excludes = parts_.excludes};
        request.isUnwanted = unwanted;
        request.deliver = deliveryOf(streamGeneration_);
        request.report = [&log = parts_.log](std::string line) { log.write(std::move(line)); };
        auto opened = parts_.events.open(request);
        if (!opened) {
            parts_.report("FileSystemWatcher: Failed to create FSEvent stream");
            parts_.log.write("FSEVENT stream could not be opened: " + opened.error());
            return;
        }
        stream_ = *std::move(opened);
    }

    void stop() {
        ++debounceGeneration_;
        ++streamGeneration_;
        forgetPending();
        stream_ = nullptr;
    }

    void deliver(int generation) {
        if (generation != debounceGeneration_) return;
        std::vector<std::string> paths;
        paths.reserve(pendingRelevantPaths_.size());
        while (!pendingRelevantPaths_.empty()) {
            auto path = pendingRelevantPaths_.extract(pendingRelevantPaths_.begin());
            paths.push_back(std::move(path.value()));
        }
        forgetPending();
        parts_.callback(std::move(paths));
    }

  private:
    // Takes a batch from the source's thread to the queue; one of a stream that has been replaced
    // is dropped there.
    std::function<void(FileEventBatch)> deliveryOf(int streamGeneration) {
        return [weak = weak_from_this(), queue = parts_.queue,
                streamGeneration](FileEventBatch batch) {
            const auto present = queue.lock();
            if (!present) return;
            present->post([weak, streamGeneration, batch = std::move(batch)]() mutable {
                const auto rules = weak.lock();
                if (!rules || rules->streamGeneration_ != streamGeneration) return;
                rules->handleEvents(std::move(batch));
            });
        };
    }

    void handleEvents(FileEventBatch batch) {
        if (batch.eventsWereLost) overflow();
        for (std::string& path : batch.paths) {
            if (!isExcluded(path, parts_.excludes)) addRelevant(std::move(path));
        }
        // Any event, even an irrelevant one, pushes back what is about to be told.
        if (hasPendingRelevantEvent_) parts_.askForDelivery(++debounceGeneration_);
    }

    void addRelevant(std::string path) {
        hasPendingRelevantEvent_ = true;
        if (pendingPathsOverflowed_) return;
        pendingRelevantPaths_.insert(std::move(path));
        if (pendingRelevantPaths_.size() > mostPendingPaths) overflow();
    }

    void overflow() {
        hasPendingRelevantEvent_ = true;
        pendingPathsOverflowed_ = true;
        pendingRelevantPaths_.clear();
    }

    void forgetPending() {
        pendingRelevantPaths_.clear();
        hasPendingRelevantEvent_ = false;
        pendingPathsOverflowed_ = false;
    }

    const Parts parts_;
    std::unordered_set<std::string> pendingRelevantPaths_;
    bool hasPendingRelevantEvent_ = false;
    bool pendingPathsOverflowed_ = false;
    int debounceGeneration_ = 0;  // raised with each delivery asked for, and with each cancelled
    int streamGeneration_ = 0;
    std::unique_ptr<FileEventStream> stream_;
};

const FileSystemWatcher::Names& FileSystemWatcher::defaultExcludes() {
    static const Names names = {
        "index.lock",  "node_modules", ".build",      ".swiftpm",      "DerivedData", ".DS_Store",
        "Pods",        ".gradle",      "__pycache__", ".pytest_cache", ".mypy_cache", ".tox",
        ".venv",       "venv",         ".env",        "dist",          "build",       ".next",
        ".nuxt",       ".output",      ".cache",      ".turbo",        ".vercel",     "coverage",
        ".nyc_output", "tmp",          "temp",        ".tmp",
    };
    return names;
}

bool FileSystemWatcher::isExcluded(std::string_view path, const Names& excludes) {
    bool excluded = false;
    forEachPiece(path, '/',
                 [&](std::string_view piece) { excluded = excluded || excludes.contains(piece); });
    return excluded;
}

FileSystemWatcher::FileSystemWatcher(Services services, Options options)
    : loop_(services.loop),
      debounceInterval_(options.debounceInterval),
      queue_(services.queues.serial("com.tarnbeck.fswatcher")) {
    auto restart = anchor_.guarded(
        [](FileSystemWatcher& self, int generation) { self.restartDebounce(generation); });
    rules_ = std::make_shared<Rules>(Rules::Parts{
        .log = services.log,
        .events = services.events,
        .report = std::move(services.report),
        .excludes = std::move(options.excludes),
        .callback = std::move(options.callback),
        .queue = queue_,
        .askForDelivery =
            [&loop = services.loop, restart](int generation) {
                loop.post([restart, generation] { restart(generation); });
            },
    });
}

FileSystemWatcher::~FileSystemWatcher() {
    stop();
}

void FileSystemWatcher::watch(std::vector<std::string> paths) {
    *streamIsUnwanted_ = true;
    streamIsUnwanted_ = std::make_shared<std::atomic<bool>>(false);
    queue_->post([rules = rules_, paths = std::move(paths), unwanted = streamIsUnwanted_] {
        rules->watch(paths, unwanted);
    });
}

void FileSystemWatcher::stop() {
    *streamIsUnwanted_ = true;
    queue_->post([rules = rules_] { rules->stop(); });
}

void FileSystemWatcher::perform(Task task) {
    queue_->post(std::move(task));
}

// The main loop measures the quiet; the queue decides whether it still counts.
void FileSystemWatcher::restartDebounce(int generation) {
    debounceTimer_ = loop_.after(debounceInterval_, [this, generation] {
        queue_->post([rules = rules_, generation] { rules->deliver(generation); });
    });
}

}  // namespace tarnbeck
