// Takes tasks for the main thread before there is a main loop, and hands them on as soon as there
// is one. Any thread.
#pragma once

#include <mutex>
#include <utility>
#include <vector>

#include "MainLoop.h"

namespace tarnbeck {

class EarlyPosts {
  public:
    void post(Task task) {
        const std::lock_guard lock(mutex_);
        if (loop_) return loop_->post(std::move(task));
        waiting_.push_back(std::move(task));
    }
    // `loop` takes all from now on, or nobody where it is null.
    void handTo(MainLoop* loop) {
        const std::lock_guard lock(mutex_);
        loop_ = loop;
        if (!loop_) return;
        for (Task& task : std::exchange(waiting_, {})) loop_->post(std::move(task));
    }

  private:
    std::mutex mutex_;
    MainLoop* loop_ = nullptr;
    std::vector<Task> waiting_;
};

}  // namespace tarnbeck
