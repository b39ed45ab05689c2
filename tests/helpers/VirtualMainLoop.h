// A main loop whose time moves only when a test says so.
#pragma once

#include <algorithm>
#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "MainLoop.h"

namespace tarnbeck::testing {

class VirtualMainLoop : public MainLoop {
  public:
    WallTime wallNow() const override {
        const std::lock_guard lock(mutex_);
        return wall_;
    }
    SteadyTime steadyNow() const override {
        const std::lock_guard lock(mutex_);
        return steady_;
    }

    void post(Task task) override {
        const std::lock_guard lock(mutex_);
        posted_.push_back(std::move(task));
    }

    [[nodiscard]] Timer after(std::chrono::nanoseconds delay, Task task) override {
        auto pending = std::make_shared<Task>(std::move(task));
        timers_.emplace(steadyNow() + delay, pending);
        return Timer(std::move(pending));
    }

    // Runs one posted task; false when there is none.
    bool runOne() {
        Task task;
        {
            const std::lock_guard lock(mutex_);
            if (posted_.empty()) return false;
            task = std::move(posted_.front());
            posted_.pop_front();
        }
        task();
        return true;
    }

    // Lets time pass, and makes each call at its own moment. `settle` is called until it has
    // nothing more to do, before the first and after every step (see `Simulation`).
    template <class Settle>
    void advance(std::chrono::nanoseconds duration, Settle settle) {
        const SteadyTime end = steadyNow() + duration;
        settle();
        while (!timers_.empty() && timers_.begin()->first <= end) {
            const auto due = timers_.extract(timers_.begin());
            moveTo(std::max(due.key(), steadyNow()));
            const Task task = std::exchange(*due.mapped(), nullptr);
            if (task) task();
            settle();
        }
        moveTo(std::max(end, steadyNow()));
    }

    // A task that takes its time: what becomes due meanwhile is late.
    void hold(std::chrono::nanoseconds duration) { moveTo(steadyNow() + duration); }

    // Turns the wall clock, as a user or a time server would.
    void setWallTime(WallTime time) {
        const std::lock_guard lock(mutex_);
        wall_ = time;
    }

    // Calls that are asked for and not cancelled.
    std::size_t pendingTimers() const {
        std::size_t count = 0;
        for (const auto& [time, task] : timers_) count += *task ? 1 : 0;
        return count;
    }

  private:
    void moveTo(SteadyTime time) {
        const std::lock_guard lock(mutex_);
        wall_ += std::chrono::duration_cast<WallTime::duration>(time - steady_);
        steady_ = time;
    }

    mutable std::mutex mutex_;
    SteadyTime steady_{std::chrono::hours(1000)};
    WallTime wall_{std::chrono::sys_days{std::chrono::year{2026} / 3 / 1} + std::chrono::hours(12)};
    std::deque<Task> posted_;
    std::multimap<SteadyTime, std::shared_ptr<Task>> timers_;
};

}  // namespace tarnbeck::testing
