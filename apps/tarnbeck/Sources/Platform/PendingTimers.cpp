#include "PendingTimers.h"

#include <utility>

namespace tarnbeck {

Timer PendingTimers::add(SteadyTime due, Task task) {
    auto pending = std::make_shared<Task>(std::move(task));
    timers_.emplace(due, pending);
    return Timer(std::move(pending));
}

void PendingTimers::runDue(SteadyTime now) {
    while (!timers_.empty() && timers_.begin()->first <= now) {
        const auto pending = timers_.extract(timers_.begin()).mapped();
        const Task task = std::exchange(*pending, nullptr);
        if (task) task();
    }
}

std::optional<SteadyTime> PendingTimers::nextDue() {
    while (!timers_.empty() && !*timers_.begin()->second) timers_.erase(timers_.begin());
    if (timers_.empty()) return std::nullopt;
    return timers_.begin()->first;
}

}  // namespace tarnbeck
