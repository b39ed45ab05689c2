#include "CaffeinateProcessLauncher.h"

#include <utility>

#include "ProcessCaffeinateProcess.h"

namespace system_awake {

CaffeinateProcessLauncher::CaffeinateProcessLauncher(std::string executableURL)
    : executableURL_(std::move(executableURL)) {}

std::variant<std::unique_ptr<CaffeinateProcess>, LaunchFailure> CaffeinateProcessLauncher::start(
    const std::vector<std::string>& arguments, std::optional<std::int32_t> boundToProcessID) {
    ChildLaunch launch{.executable = executableURL_};
    if (boundToProcessID) launch.arguments = {"-w", std::to_string(*boundToProcessID)};
    launch.arguments.insert(launch.arguments.end(), arguments.begin(), arguments.end());
    return ProcessCaffeinateProcess::launch(std::move(launch));
}

}  // namespace system_awake
