// The main thread: all state of the long-lived objects is touched there and nowhere else.
#pragma once

#include <chrono>
#include <memory>
#include <utility>

#include "Clock.h"
#include "Task.h"

namespace tarnbeck {

// A call that has been asked for later. It is cancelled when this goes, unless it was let go.
// Main thread only.
class Timer {
  public:
    Timer() = default;
    // `pending` is what the loop watches: a call whose owner is gone is not made.
    explicit Timer(std::shared_ptr<Task> pending) : pending_(std::move(pending)) {}
    Timer(Timer&&) = default;
    Timer& operator=(Timer&& other) noexcept {
        if (this != &other) {
            cancel();
            pending_ = std::move(other.pending_);
        }
        return *this;
    }
    ~Timer() { cancel(); }

    void cancel() {
        if (pending_) *std::exchange(pending_, nullptr) = nullptr;
    }
    // Lets the call come although nobody holds it any more.
    void detach() { pending_ = nullptr; }
    // True from the asking until the call is made or cancelled.
    bool isPending() const { return pending_ && *pending_; }

  private:
    std::shared_ptr<Task> pending_;
};

class MainLoop : public Clock {
  public:
    // Runs `task` on the main thread, after all that was posted before. Any thread.
    virtual void post(Task task) = 0;

    // Runs `task` on the main thread when `delay` has passed. Main thread only.
    [[nodiscard]] virtual Timer after(std::chrono::nanoseconds delay, Task task) = 0;
};

}  // namespace tarnbeck
