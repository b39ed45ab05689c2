// The calls that a main loop has been asked to make later. Main thread only.
#pragma once

#include <map>
#include <memory>
#include <optional>

#include "MainLoop.h"

namespace tarnbeck {

class PendingTimers {
  public:
    [[nodiscard]] Timer add(SteadyTime due, Task task);

    // Makes the calls that are due at `now`, in the order in which they became due.
    void runDue(SteadyTime now);

    // When the next call is due that has not been cancelled; absent when there is none.
    std::optional<SteadyTime> nextDue();

  private:
    std::multimap<SteadyTime, std::shared_ptr<Task>> timers_;
};

}  // namespace tarnbeck
