// Starting a child must not get dearer with the memory of the parent: with 1 GiB of touched memory
// against little.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>

#include "Fixture.h"
#include "ProcessPipeReader.h"
#include "Report.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

constexpr int spawns = 400;
constexpr int rounds = 5;
constexpr std::size_t gibibyte = std::size_t{1} << 30;

// Seconds for one whole command, from the launch to its reaped end.
double secondsPerCommand(PosixProcessLauncher& launcher) {
    const std::string executable = "/bin/true";
    const auto start = std::chrono::steady_clock::now();
    for (int count = 0; count < spawns; ++count) {
        auto child = launcher.launch({.executable = executable});
        if (!child) std::abort();
        auto reader = ProcessPipeReader::readStdoutAndStderr((*child)->takeStandardOutput(),
                                                             (*child)->takeStandardError());
        const auto deadline = start + std::chrono::minutes(5);
        reader.waitForEnd(deadline);
        reader.waitForExit(**child, deadline);
    }
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    return duration.count() / spawns;
}

}  // namespace

int main() {
    PosixProcessLauncher launcher;
    double little = 1e9;
    double much = 1e9;
    secondsPerCommand(launcher);  // warms the caches
    for (int round = 0; round < rounds; ++round) {
        little = std::min(little, secondsPerCommand(launcher));
        const std::unique_ptr<char[]> memory(new char[gibibyte]);
        std::memset(memory.get(), 1, gibibyte);
        much = std::min(much, secondsPerCommand(launcher));
    }
    Report report;
    report.note(fmt::format("a command: {:.0f} us beside little memory, {:.0f} us beside 1 GiB",
                            little * 1e6, much * 1e6));
    report.atMost("spawning, 1 GiB of touched memory / little", much / little, 1.1);
    return report.exitStatus();
}
