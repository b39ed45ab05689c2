// The system's own file events, as they are told: waits for what must come, and can show that
// something did not come.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "SystemFileEvents.h"

namespace tarnbeck::testing {

class ObservedEvents {
  public:
    using Time = std::chrono::steady_clock::time_point;
    using Excludes = std::set<std::string, std::less<>>;

    struct Batch {
        FileEventBatch content;
        Time at;
    };

    ObservedEvents() = default;
    ~ObservedEvents() { close(); }
    ObservedEvents(const ObservedEvents&) = delete;
    ObservedEvents& operator=(const ObservedEvents&) = delete;

    // The words of the failure, if it fails.
    std::optional<std::string> open(std::vector<std::string> roots, const Excludes& excludes = {}) {
        auto stream = makeFileEvents()->open(
            {.roots = std::move(roots),
             .excludes = excludes,
             .deliver = [this](FileEventBatch batch) { note(std::move(batch)); },
             .report = [this](std::string line) { noteLine(std::move(line)); }});
        if (!stream) return stream.error();
        stream_ = std::move(*std::move(stream));
        return std::nullopt;
    }
    void close() { stream_.reset(); }

    // Until that was told. False when it does not come.
    bool waitFor(const std::string& path) {
        return waitUntil([&] { return paths_.contains(path); });
    }
    bool waitUntilTold(const std::function<bool(const std::set<std::string>&)>& isEnough) {
        return waitUntil([&] { return isEnough(paths_); });
    }
    // Until it was told, or more losses than `known` were.
    bool waitForOrLoss(const std::string& path, std::size_t known) {
        return waitUntil([&] { return paths_.contains(path) || losses_ > known; });
    }
    bool waitForLoss() {
        return waitUntil([&] { return losses_ > 0; });
    }
    bool waitForBatches(std::size_t count) {
        return waitUntil([&] { return batches_.size() >= count; });
    }
    // From here on deliveries wait inside the call until `letGo`.
    void hold() { setHeld(true); }
    void letGo() { setHeld(false); }
    bool waitUntilHeld() {
        return waitUntil([&] { return waiting_; });
    }

    bool wasTold(const std::string& path) {
        const std::lock_guard lock(mutex_);
        return paths_.contains(path);
    }
    std::set<std::string> paths() {
        const std::lock_guard lock(mutex_);
        return paths_;
    }
    std::size_t losses() {
        const std::lock_guard lock(mutex_);
        return losses_;
    }
    std::vector<Batch> batches() {
        const std::lock_guard lock(mutex_);
        return batches_;
    }
    std::vector<std::string> lines() {
        const std::lock_guard lock(mutex_);
        return lines_;
    }
    void forget() {
        const std::lock_guard lock(mutex_);
        batches_.clear();
        paths_.clear();
        losses_ = 0;
    }

  private:
    bool waitUntil(const std::function<bool()>& isTrue) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(60), isTrue);
    }
    void note(FileEventBatch batch) {
        std::unique_lock lock(mutex_);
        paths_.insert(batch.paths.begin(), batch.paths.end());
        losses_ += batch.eventsWereLost;
        batches_.push_back({std::move(batch), std::chrono::steady_clock::now()});
        waiting_ = held_;
        changed_.notify_all();
        changed_.wait(lock, [&] { return !held_; });
        waiting_ = false;
    }
    void noteLine(std::string line) {
        const std::lock_guard lock(mutex_);
        lines_.push_back(std::move(line));
        changed_.notify_all();
    }
    void setHeld(bool held) {
        const std::lock_guard lock(mutex_);
        held_ = held;
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Batch> batches_;
    std::set<std::string> paths_;
    std::vector<std::string> lines_;
    std::size_t losses_ = 0;
    bool held_ = false;
    bool waiting_ = false;
    std::unique_ptr<FileEventStream> stream_;
};

}  // namespace tarnbeck::testing
