// A call that comes again and again, each `interval` (above zero) after the one before was due.
// Main thread only; it ends with this object.
#pragma once

#include <chrono>

#include "MainLoop.h"

namespace tarnbeck {

class RepeatingTimer {
  public:
    RepeatingTimer(MainLoop& loop, std::chrono::nanoseconds interval, Task task);

  private:
    void scheduleNext();

    MainLoop& loop_;
    std::chrono::nanoseconds interval_;
    Task task_;
    SteadyTime due_;
    Timer timer_;
};

}  // namespace tarnbeck
