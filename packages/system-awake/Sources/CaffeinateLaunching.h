// How a child that keeps the machine awake is started; replaced in tests and by other systems.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace system_awake {

class CaffeinateProcess {
  public:
    CaffeinateProcess() = default;
    CaffeinateProcess(const CaffeinateProcess&) = delete;
    CaffeinateProcess& operator=(const CaffeinateProcess&) = delete;
    virtual ~CaffeinateProcess() = default;

    // Another one for each process.
    virtual const std::string& id() const = 0;
    // False as soon as the child has ended, also before the handler was called.
    virtual bool isRunning() const = 0;
    // Called once, when the child has ended (at once, if it has already), on a thread of the
    // system's choosing. No call comes, or is still under way, once this has gone.
    virtual void setTerminationHandler(std::function<void()> handler) = 0;
    // Asks the child to end, and returns before it has. A child that runs when this goes stays.
    virtual void terminate() = 0;
};

struct LaunchFailure {
    std::string message;  // the system's words
};

class CaffeinateLaunching {
  public:
    CaffeinateLaunching() = default;
    CaffeinateLaunching(const CaffeinateLaunching&) = delete;
    CaffeinateLaunching& operator=(const CaffeinateLaunching&) = delete;
    virtual ~CaffeinateLaunching() = default;

    // `arguments` are flags of `CaffeinateAssertion`. The child ends when the process with the
    // given number does. Main thread.
    virtual std::variant<std::unique_ptr<CaffeinateProcess>, LaunchFailure> start(
        const std::vector<std::string>& arguments,
        std::optional<std::int32_t> boundToProcessID) = 0;
};

}  // namespace system_awake
