// Where work runs that must not hold up the main thread.
#pragma once

#include <memory>
#include <string>

#include "Task.h"

namespace tarnbeck {

// Runs its tasks one after the other, in the order in which they came.
class SerialQueue {
  public:
    SerialQueue() = default;
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;
    virtual ~SerialQueue() = default;

    // Any thread.
    virtual void post(Task task) = 0;
    // Waits until all that was posted so far has run. Never from a task of this queue.
    virtual void drain() = 0;
};

// All operations may be called from any thread. A task may block: the queues grow on demand.
class WorkQueues {
  public:
    WorkQueues() = default;
    WorkQueues(const WorkQueues&) = delete;
    WorkQueues& operator=(const WorkQueues&) = delete;
    virtual ~WorkQueues() = default;

    // For what a person is waiting for.
    virtual void userInitiated(Task task) = 0;
    // For what may take its time; runs at a lower priority, and so do the children it starts.
    virtual void utility(Task task) = 0;
    // A new queue of utility class; `label` names it to the reader of a stack trace.
    virtual std::shared_ptr<SerialQueue> serial(std::string label) = 0;
};

}  // namespace tarnbeck
