#include "GhListCommand.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "FileSystem.h"
#include "ProcessPipeReader.h"
#include "Text.h"

namespace tarnbeck {
namespace {

using std::chrono::steady_clock;

std::vector<std::string> argumentsOf(const GhListCommand::List& list) {
    return {std::string(list.resource),   "list",         "--repo",
            std::string(list.ownerRepo),  "--state=open", "--json",
            std::string(list.jsonFields), "--limit",      "100"};
}

// Asks the child to end, then makes it end, and gives its pipes a moment to close.
void endTimedOut(ChildProcess& child, ProcessPipeReadHandle& reader, const GhTimeouts& timeouts) {
    child.terminate();
    if (!reader.waitForExit(child, steady_clock::now() + timeouts.termination)) {
        child.kill();
        reader.waitForExit(child, steady_clock::now() + timeouts.killing);
    }
    reader.waitForEnd(steady_clock::now() + timeouts.drain);
}

}  // namespace

GhListCommand::GhListCommand(Options options, ProcessLauncher& launcher, ScanLog& log)
    : options_(std::move(options)),
      environment_{"HOME=" + options_.home,
                   "PATH=/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin",
                   "LC_ALL=C", "GH_NO_UPDATE_NOTIFIER=1"},
      launcher_(launcher),
      log_(log) {}

std::optional<std::string> GhListCommand::run(const List& list) {
    const std::optional<std::string>& executable = findGhExecutable();
    if (!executable) return std::nullopt;
    const std::vector<std::string> arguments = argumentsOf(list);
    auto launched = launcher_.launch(
        {.executable = *executable, .arguments = arguments, .environment = environment_});
    if (!launched) {
        log_.write(fmt::format("GITHUB gh launch failed for {} {}: {}", list.resource,
                               list.ownerRepo, launched.error()));
        return std::nullopt;
    }
    return outputOf(**launched, list);
}

const std::optional<std::string>& GhListCommand::findGhExecutable() {
    std::call_once(checked_, [this] {
        const auto found = std::ranges::find_if(options_.executables, isExecutableFile);
        if (found != options_.executables.end()) {
            executable_ = *found;
        } else {
            log_.write("GITHUB gh CLI not found in known paths");
        }
    });
    return executable_;
}

std::optional<std::string> GhListCommand::outputOf(ChildProcess& child, const List& list) const {
    auto reader = ProcessPipeReader::readStdoutAndStderr(child.takeStandardOutput(),
                                                         child.takeStandardError());
    const auto subject = [&] {
        return fmt::format("gh {} list for {}", list.resource, list.ownerRepo);
    };
    if (!reader.waitForExit(child, steady_clock::now() + options_.timeouts.run)) {
        endTimedOut(child, reader, options_.timeouts);
        log_.write("GITHUB TIMEOUT " + subject());
        return std::nullopt;
    }
    reader.waitForEnd(steady_clock::now() + options_.timeouts.drain);
    if (child.terminationStatus() != 0) {
        const std::string errors = reader.takeStandardError();
        log_.write(fmt::format("GITHUB FAIL({}) {} — {}", child.terminationStatus(), subject(),
                               trimmingWhitespaceAndNewlines(decodedUtf8(errors))));
        return std::nullopt;
    }
    return reader.takeStandardOutput();
}

}  // namespace tarnbeck
