#include "RepeatingTimer.h"

#include <utility>

namespace tarnbeck {

RepeatingTimer::RepeatingTimer(MainLoop& loop, std::chrono::nanoseconds interval, Task task)
    : loop_(loop), interval_(interval), task_(std::move(task)), due_(loop.steadyNow()) {
    scheduleNext();
}

void RepeatingTimer::scheduleNext() {
    const SteadyTime now = loop_.steadyNow();
    due_ += interval_;
    if (due_ <= now) due_ = now + interval_;  // calls that were missed are not made up for
    timer_ = loop_.after(due_ - now, [this] {
        const Task task = task_;  // the call may end this object
        scheduleNext();
        task();
    });
}

}  // namespace tarnbeck
