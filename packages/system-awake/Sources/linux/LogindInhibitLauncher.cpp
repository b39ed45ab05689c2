#include "LogindInhibitLauncher.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>

#include "CaffeinateAssertion.h"
#include "LogindLock.h"
#include "ProcessCaffeinateProcess.h"

namespace system_awake {
namespace {

// logind's words for what the flags ask for, separated by colons; empty where it has none.
std::string whatIsLocked(const std::vector<std::string>& flags) {
    const auto asksFor = [&](CaffeinateAssertion assertion) {
        return std::ranges::find(flags, flag(assertion)) != flags.end();
    };
    const bool idleSleep = asksFor(CaffeinateAssertion::preventIdleSystemSleep);
    const bool idle = idleSleep || asksFor(CaffeinateAssertion::preventDisplaySleep);
    const bool sleep = idleSleep || asksFor(CaffeinateAssertion::preventSystemSleepOnACPower);
    if (idle && sleep) return "idle:sleep";
    if (idle) return "idle";
    return sleep ? "sleep" : "";
}

}  // namespace

LogindInhibitLauncher::LogindInhibitLauncher(Options options) : options_(std::move(options)) {}

std::variant<std::unique_ptr<CaffeinateProcess>, LaunchFailure> LogindInhibitLauncher::start(
    const std::vector<std::string>& arguments, std::optional<std::int32_t> boundToProcessID) {
    if (boundToProcessID.value_or(getpid()) != getpid()) {
        return LaunchFailure{"A lock can be bound to this process only"};
    }
    const std::string what = whatIsLocked(arguments);
    if (what.empty()) return LaunchFailure{"logind has no lock that keeps disks awake"};
    auto lock = takeLogindLock(
        {.what = what, .who = options_.who, .why = options_.why, .timeout = options_.timeout});
    if (auto* failure = std::get_if<LaunchFailure>(&lock)) return std::move(*failure);
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) return LaunchFailure{std::generic_category().message(errno)};
    return ProcessCaffeinateProcess::launch({.executable = options_.holderExecutable,
                                             .standardInput = OwnedDescriptor(ends[0]),
                                             .held = std::get<OwnedDescriptor>(std::move(lock)),
                                             .keptUntilTheEnd = OwnedDescriptor(ends[1])});
}

}  // namespace system_awake
