// Waits for the end of a child, as its handler tells it.
#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>

namespace system_awake::testing {

class EndOfChild {
  public:
    std::function<void()> handler() {
        return [told = told_] { told->set_value(); };
    }
    // False when it does not come.
    bool wait() { return future_.wait_for(std::chrono::seconds(60)) == std::future_status::ready; }
    bool cameAlready() const {
        return future_.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    }

  private:
    std::shared_ptr<std::promise<void>> told_ = std::make_shared<std::promise<void>>();
    std::future<void> future_ = told_->get_future();
};

}  // namespace system_awake::testing
