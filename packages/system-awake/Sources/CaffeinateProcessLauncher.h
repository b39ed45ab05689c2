// Runs a tool like macOS's `caffeinate`, which keeps the machine awake for as long as it runs.
#pragma once

#include <string>

#include "CaffeinateLaunching.h"

namespace system_awake {

// The tool is launched with an empty environment, the null device for input and output, and no
// other descriptor. Bound to a process, it is told that with "-w" and ends by itself.
class CaffeinateProcessLauncher : public CaffeinateLaunching {
  public:
    // An absolute path.
    explicit CaffeinateProcessLauncher(std::string executableURL);

    std::variant<std::unique_ptr<CaffeinateProcess>, LaunchFailure> start(
        const std::vector<std::string>& arguments,
        std::optional<std::int32_t> boundToProcessID) override;

  private:
    std::string executableURL_;
};

}  // namespace system_awake
