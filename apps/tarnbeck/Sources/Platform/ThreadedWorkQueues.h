// Work queues on real threads: one pool a class, which grows by a thread whenever none is idle, so
// that tasks that wait for children never wait for each other. Posting throws `std::system_error`
// where the system does not give a single thread.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "WorkQueues.h"

namespace tarnbeck {

class ThreadedWorkQueues : public WorkQueues {
  public:
    ThreadedWorkQueues();
    // Runs what is queued to its end and joins all threads.
    ~ThreadedWorkQueues() override;

    void userInitiated(Task task) override;
    void utility(Task task) override;
    std::shared_ptr<SerialQueue> serial(std::string label) override;

    // Waits until nothing is queued and nothing runs. Not from a task.
    void waitUntilIdle();
    // The same, but no longer than `atMost`: false where there is still something to do.
    bool waitUntilIdle(std::chrono::nanoseconds atMost);

  private:
    class Outstanding;
    class Pool;
    class Strand;
    std::shared_ptr<Outstanding> outstanding_;
    std::shared_ptr<Pool> userInitiated_;
    std::shared_ptr<Pool> utility_;
};

}  // namespace tarnbeck
