// Keeps the machine from sleeping for as long as the user wants, by a child process that is bound
// to this one. Main thread only.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "CaffeinateAssertion.h"
#include "CaffeinateLaunching.h"

namespace system_awake {

using WallTime = std::chrono::system_clock::time_point;

struct CaffeinateState {
    struct Active {
        WallTime startedAt;
        std::vector<CaffeinateAssertion> assertions;
        bool operator==(const Active&) const = default;
    };
    struct Failed {
        std::string message;  // the system's words
        bool operator==(const Failed&) const = default;
    };
    struct Inactive {
        bool operator==(const Inactive&) const = default;
    };
    std::variant<Inactive, Active, Failed> value;

    bool isActive() const { return std::holds_alternative<Active>(value); }
    bool operator==(const CaffeinateState&) const = default;
};

class CaffeinateController {
  public:
    struct Environment {
        // Runs a task on the main thread; any thread may call it.
        std::function<void(std::function<void()>)> postToMainThread;
        std::function<WallTime()> now = std::chrono::system_clock::now;
    };
    // `launcher` must outlive it. The child ends when the process of `boundProcessID` does.
    // A child that runs when this goes is left to that.
    CaffeinateController(CaffeinateLaunching& launcher, std::optional<std::int32_t> boundProcessID,
                         Environment environment);
    ~CaffeinateController();
    CaffeinateController(const CaffeinateController&) = delete;
    CaffeinateController& operator=(const CaffeinateController&) = delete;

    const CaffeinateState& state() const { return state_; }
    // False as soon as the child has ended, also before the state says so.
    bool isActive() const;
    // The same list in the same order as the one at work: nothing changes, the time included.
    // Otherwise a child that runs is replaced. A failure is told by the state.
    void start(const std::vector<CaffeinateAssertion>& assertions);
    // Clears a failure too.
    void stop();
    void toggle(const std::vector<CaffeinateAssertion>& assertions);

    // Told after each write of the state. One observes as long as one holds the token.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> observer);

  private:
    using Observer = std::function<void()>;

    void setState(CaffeinateState state);
    void processDidTerminate(const std::string& processID);
    std::function<void()> terminationHandlerOf(const std::string& processID);

    CaffeinateState state_;
    CaffeinateLaunching& launcher_;
    std::optional<std::int32_t> boundProcessID_;
    std::unique_ptr<CaffeinateProcess> process_;
    Environment environment_;
    std::vector<std::weak_ptr<Observer>> observers_;
    // What a callback holds of this: it leads here for as long as this lives.
    std::shared_ptr<CaffeinateController*> anchor_;
};

}  // namespace system_awake
