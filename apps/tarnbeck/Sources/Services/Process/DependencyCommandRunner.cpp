#include "DependencyCommandRunner.h"

#include <utility>

#include "ProcessPipeReader.h"
#include "Text.h"

namespace tarnbeck {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

DependencyCommandRunner::DependencyCommandRunner(const std::string& home, ProcessLauncher& launcher)
    : DependencyCommandRunner(
          ImmutableList<std::string>{"HOME=" + home, "PATH=" + std::string(searchPath), "LC_ALL=C",
                                     "CI=true", "COREPACK_ENABLE_NETWORK=0"},
          launcher) {}

DependencyCommandRunner::DependencyCommandRunner(ImmutableList<std::string> environment,
                                                 ProcessLauncher& launcher)
    : environment_(std::move(environment)), launcher_(launcher) {}

DependencyCommandRunner DependencyCommandRunner::withEnvironment(
    ImmutableList<std::string> environment, ProcessLauncher& launcher) {
    return {std::move(environment), launcher};
}

CommandResult DependencyCommandRunner::runCommand(const Command& command) const {
    auto launched = launcher_.launch({.executable = command.executable,
                                      .arguments = command.args,
                                      .environment = environment_,
                                      .workingDirectory = command.cwd.c_str()});
    if (!launched) return {.launchError = "Failed to launch command: " + launched.error()};
    ChildProcess& child = **launched;
    auto reader = ProcessPipeReader::readStdoutAndStderr(child.takeStandardOutput(),
                                                         child.takeStandardError());
    reader.observe(command.observer);
    CommandResult result;
    result.timedOut = !reader.waitForExit(child, steady_clock::now() + command.timeout);
    if (result.timedOut) {
        child.terminate();
        if (!reader.waitForExit(child, steady_clock::now() + 50ms)) child.kill();
    }
    const auto end = steady_clock::now() + 2s;
    reader.waitForEnd(end);
    reader.waitForExit(child, end);
    result.terminationStatus = child.terminationStatus();
    const std::string output = reader.takeStandardOutput();
    const std::string errors = reader.takeStandardError();
    result.stdout = trimmingNewlines(decodedUtf8(output));
    result.stderr = trimmingWhitespaceAndNewlines(decodedUtf8(errors));
    return result;
}

}  // namespace tarnbeck
