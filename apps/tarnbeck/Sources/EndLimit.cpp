#include "EndLimit.h"

#include <system_error>
#include <utility>

namespace tarnbeck {

EndLimit::EndLimit(std::chrono::nanoseconds limit, std::function<void()> onOver)
    : deadline_(std::chrono::steady_clock::now() + limit), onOver_(std::move(onOver)) {
    try {
        thread_ = std::thread([this] { watch(); });
    } catch (const std::system_error&) {
    }
}

EndLimit::~EndLimit() {
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    wake_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void EndLimit::watch() {
    std::unique_lock lock(mutex_);
    if (wake_.wait_until(lock, deadline_, [this] { return isOver_; })) return;
    lock.unlock();
    onOver_();
}

}  // namespace tarnbeck
