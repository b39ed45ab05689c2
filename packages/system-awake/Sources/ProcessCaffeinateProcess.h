// A real child that keeps the machine awake.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <variant>

#include <sys/types.h>

#include "CaffeinateLaunching.h"
#include "ChildLaunch.h"

namespace system_awake {

// The child is waited for on a thread of its own, which sleeps until it ends, and so reaps it
// whether or not this still lives. Any thread.
class ProcessCaffeinateProcess : public CaffeinateProcess {
    class Child;

  public:
    // The child, or the system's words why there is none.
    static std::variant<std::unique_ptr<CaffeinateProcess>, LaunchFailure> launch(
        ChildLaunch launch);
    explicit ProcessCaffeinateProcess(std::shared_ptr<Child> child);
    ~ProcessCaffeinateProcess() override;

    const std::string& id() const override { return id_; }
    pid_t processIdentifier() const;
    bool isRunning() const override;
    // Not from within the handler.
    void setTerminationHandler(std::function<void()> handler) override;
    // SIGTERM, and never after it was reaped.
    void terminate() override;

  private:
    std::string id_;  // a UUID
    std::shared_ptr<Child> child_;
};

}  // namespace system_awake
