#include "GitCommand.h"

#include <utility>

#include <fmt/format.h>

#include "ProcessPipeReader.h"
#include "Text.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

// Asks the child to end, then makes it end, and gives its pipes a moment to close.
void endTimedOut(ChildProcess& child, ProcessPipeReadHandle& reader) {
    child.terminate();
    if (!reader.waitForExit(child, steady_clock::now() + 50ms)) {
        child.kill();
        reader.waitForExit(child, steady_clock::now() + 1s);
    }
    reader.waitForEnd(steady_clock::now() + 1s);
}

}  // namespace

GitCommand::GitCommand(Options options, ProcessLauncher& launcher, ScanLog& log)
    : options_(std::move(options)),
      environment_{"HOME=" + options_.home, "GIT_TERMINAL_PROMPT=0", "GIT_OPTIONAL_LOCKS=0",
                   "LC_ALL=C",
                   "PATH=/usr/bin:/bin:/usr/sbin:/sbin:/usr/local/bin:/opt/homebrew/bin"},
      launcher_(launcher),
      log_(log) {}

std::optional<std::string> GitCommand::run(const GitInvocation& invocation) const {
    const auto subject = [&] {
        return fmt::format("git {} at {}", joined(invocation.logicalArgs, " "),
                           invocation.logRepoPath);
    };
    auto launched = launcher_.launch({.executable = options_.executable,
                                      .arguments = invocation.executableArgs,
                                      .environment = environment_});
    if (!launched) {
        log_.write(fmt::format("EXCEPTION {} — {}", subject(), launched.error()));
        return std::nullopt;
    }
    ChildProcess& child = **launched;
    auto reader = ProcessPipeReader::readStdoutAndStderr(child.takeStandardOutput(),
                                                         child.takeStandardError());
    if (!reader.waitForExit(child, steady_clock::now() + invocation.timeout)) {
        endTimedOut(child, reader);
        log_.write("TIMEOUT " + subject());
        return std::nullopt;
    }
    reader.waitForEnd(steady_clock::now() + 2s);
    if (child.terminationStatus() != 0) {
        const std::string errors = reader.takeStandardError();
        log_.write(fmt::format("FAIL({}) {} — {}", child.terminationStatus(), subject(),
                               trimmingWhitespaceAndNewlines(decodedUtf8(errors))));
        return std::nullopt;
    }
    const std::string output = reader.takeStandardOutput();
    const std::string_view text = trimmingNewlines(decodedUtf8(output));
    if (text.empty() && !invocation.allowEmpty) {
        log_.write(fmt::format("EMPTY {} (exit 0 but no stdout)", subject()));
        return std::nullopt;
    }
    return std::string(text);
}

}  // namespace tarnbeck
