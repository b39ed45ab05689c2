// The main loop of the desktop application: Qt's own, so that tasks, timers, windows and signals
// take turns. It wakes up for nothing while nothing is posted, due or signalled. There must be a
// QCoreApplication for as long as it lives.
#pragma once

#include <deque>
#include <functional>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <vector>

#include "FileDescriptor.h"
#include "MainLoop.h"
#include "PendingTimers.h"

class QSocketNotifier;

namespace tarnbeck {

class QtMainLoop : public MainLoop {
  public:
    QtMainLoop();
    ~QtMainLoop() override;

    WallTime wallNow() const override;
    SteadyTime steadyNow() const override;
    void post(Task task) override;
    [[nodiscard]] Timer after(std::chrono::nanoseconds delay, Task task) override;

    // Calls `handler` on the main thread, with the signal's number, whenever one of `signals`
    // arrives. One loop a process may do so. Main thread.
    void onSignals(std::initializer_list<int> signals, std::function<void(int)> handler);
    // Lets those signals do what they do by default again. Main thread.
    void forgetSignals();

    // Runs until `stop`, or until Qt is asked to quit by another road. Main thread.
    void run();
    // Any thread, and from tasks.
    void stop();

    // Forgets what was posted and has not begun: for the end, after `run` and before that goes what
    // it holds on to. Main thread.
    void dropPosted();

  private:
    class Receiver;

    void runPosted();
    void runDueTimers();
    void armTimer();
    void runSignalled();

    std::unique_ptr<Receiver> receiver_;
    std::mutex mutex_;
    std::deque<Task> posted_;  // guarded by `mutex_`
    bool turnIsDue_ = false;   // guarded by `mutex_`: `runPosted` will be called
    bool runsPosted_ = false;  // guarded by `mutex_`
    std::deque<Task> turn_;    // what is run in this turn and has not begun
    PendingTimers timers_;
    std::vector<int> signals_;  // that are told of
    FileDescriptor signalRead_;
    FileDescriptor signalWrite_;
    std::unique_ptr<QSocketNotifier> signalNotifier_;
    std::function<void(int)> signalHandler_;
};

}  // namespace tarnbeck
