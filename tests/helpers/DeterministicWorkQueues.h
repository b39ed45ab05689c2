// Work queues without threads: tasks wait in one line until a test runs them.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <utility>

#include "WorkQueues.h"

namespace tarnbeck::testing {

class DeterministicWorkQueues : public WorkQueues {
  public:
    void userInitiated(Task task) override { tasks_->push_back(std::move(task)); }
    void utility(Task task) override { tasks_->push_back(std::move(task)); }
    std::shared_ptr<SerialQueue> serial(std::string /*label*/) override {
        return std::make_shared<Line>(tasks_);
    }

    // Runs one task; false when there is none.
    bool runOne() { return runFirst(*tasks_); }

  private:
    using Tasks = std::deque<Task>;

    static bool runFirst(Tasks& tasks) {
        if (tasks.empty()) return false;
        const Task task = std::move(tasks.front());
        tasks.pop_front();
        task();
        return true;
    }

    // Has a line of its own, so that draining it runs nobody else's tasks.
    class Line : public SerialQueue {
      public:
        explicit Line(std::shared_ptr<Tasks> shared) : shared_(std::move(shared)) {}
        void post(Task task) override {
            own_->push_back(std::move(task));
            shared_->push_back([own = own_] { runFirst(*own); });
        }
        void drain() override {
            while (runFirst(*own_)) {
            }
        }

      private:
        std::shared_ptr<Tasks> shared_;
        std::shared_ptr<Tasks> own_ = std::make_shared<Tasks>();
    };

    std::shared_ptr<Tasks> tasks_ = std::make_shared<Tasks>();
};

}  // namespace tarnbeck::testing
