// Signals on their way to a main loop: the handler notes them and wakes the loop, which asks for
// them on its own thread. One loop a process may do so.
#pragma once

#include <initializer_list>
#include <vector>

namespace tarnbeck {

// From now on each of `signals` is noted, and a byte is written to `wakeDescriptor`, which must not
// block. Main thread.
void noteSignals(std::initializer_list<int> signals, int wakeDescriptor);

// The descriptor is about to be closed. Nothing where another one is in use.
void stopWakingFor(int wakeDescriptor);

// Those that arrived since the last call, each once, in ascending order. Main thread.
std::vector<int> takeArrivedSignals();

}  // namespace tarnbeck
