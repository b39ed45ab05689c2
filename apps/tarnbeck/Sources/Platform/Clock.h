// What time it is. Callable from any thread.
#pragma once

#include <chrono>

namespace tarnbeck {

using WallTime = std::chrono::system_clock::time_point;    // for stamps and ages; may jump
using SteadyTime = std::chrono::steady_clock::time_point;  // for delays; never jumps

class Clock {
  public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    virtual WallTime wallNow() const = 0;
    virtual SteadyTime steadyNow() const = 0;
};

}  // namespace tarnbeck
