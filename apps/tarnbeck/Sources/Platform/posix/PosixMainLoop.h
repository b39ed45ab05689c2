// The main loop of a program without a toolkit: it sleeps in `poll` until something is posted, due
// or signalled, and makes no system call while nothing is.
#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <initializer_list>
#include <mutex>

#include "FileDescriptor.h"
#include "MainLoop.h"
#include "PendingTimers.h"

namespace tarnbeck {

class PosixMainLoop : public MainLoop {
  public:
    PosixMainLoop();
    ~PosixMainLoop() override;

    WallTime wallNow() const override;
    SteadyTime steadyNow() const override;
    void post(Task task) override;
    [[nodiscard]] Timer after(std::chrono::nanoseconds delay, Task task) override;

    // Calls `handler` on the main thread, with the signal's number, whenever one of `signals`
    // arrives. One loop a process may do so. Main thread.
    void onSignals(std::initializer_list<int> signals, std::function<void(int)> handler);

    // Runs until `stop`. Main thread.
    void run();
    // Any thread, and from tasks.
    void stop();

  private:
    void runPosted();
    void runSignalled();
    int pollTimeout();
    void sleepUntilWoken();

    FileDescriptor wakeRead_;
    FileDescriptor wakeWrite_;
    std::mutex mutex_;
    std::deque<Task> posted_;  // guarded by `mutex_`
    bool asleep_ = false;      // guarded by `mutex_`: a post must wake the loop
    PendingTimers timers_;
    std::function<void(int)> signalHandler_;
    std::atomic<bool> stopped_{false};
};

}  // namespace tarnbeck
