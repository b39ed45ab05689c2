// Sees to it that an end that hangs, on a disk that does not answer say, is an end all the same.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace tarnbeck {

class EndLimit {
  public:
    // Calls `onOver` on a thread of its own when `limit` has passed and this is still there. Where
    // the system gives no thread there is no limit.
    EndLimit(std::chrono::nanoseconds limit, std::function<void()> onOver);
    // Waits for a call that has begun.
    ~EndLimit();
    EndLimit(const EndLimit&) = delete;
    EndLimit& operator=(const EndLimit&) = delete;

  private:
    void watch();

    const std::chrono::steady_clock::time_point deadline_;
    const std::function<void()> onOver_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool isOver_ = false;  // guarded by `mutex_`: in time
    std::thread thread_;
};

}  // namespace tarnbeck
