// A clock that goes on when a test says so.
#pragma once

#include "Clock.h"

namespace tarnbeck::testing {

class ClockByHand : public Clock {
  public:
    WallTime wallNow() const override { return {}; }
    SteadyTime steadyNow() const override { return now; }

    SteadyTime now;
};

}  // namespace tarnbeck::testing
