// A virtual main loop and deterministic queues that run together: the whole engine in one thread,
// in virtual time.
#pragma once

#include <chrono>

#include "DeterministicWorkQueues.h"
#include "VirtualMainLoop.h"

namespace tarnbeck::testing {

struct Simulation {
    VirtualMainLoop loop;
    DeterministicWorkQueues queues;

    // Runs all that can run now, without letting time pass.
    void runUntilIdle() {
        while (loop.runOne() || queues.runOne()) {
        }
    }

    void advance(std::chrono::nanoseconds duration) {
        loop.advance(duration, [this] { runUntilIdle(); });
        runUntilIdle();
    }
};

}  // namespace tarnbeck::testing
