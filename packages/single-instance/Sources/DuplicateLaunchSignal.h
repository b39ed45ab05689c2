// How the first copy hears of a second.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "NamedSignals.h"

namespace single_instance {

// The handler is called until this is cancelled or goes.
class DuplicateLaunchSignalObservation {
  public:
    DuplicateLaunchSignalObservation(std::string name, std::shared_ptr<void> observer)
        : name_(std::move(name)), observer_(std::move(observer)) {}

    const std::string& name() const { return name_; }
    bool isCancelled() const { return isCancelled_; }
    // Removes the observer, once; no call of the handler is under way when this returns.
    void cancel() {
        isCancelled_ = true;
        observer_.reset();
    }

  private:
    std::string name_;
    std::shared_ptr<void> observer_;
    bool isCancelled_ = false;
};

namespace DuplicateLaunchSignal {

// `handler` is called on a thread of the system's choosing.
inline DuplicateLaunchSignalObservation observe(const std::string& name,
                                                std::function<void()> handler,
                                                NamedSignals& signals) {
    return {name, signals.observe(name, std::move(handler))};
}

}  // namespace DuplicateLaunchSignal

}  // namespace single_instance
