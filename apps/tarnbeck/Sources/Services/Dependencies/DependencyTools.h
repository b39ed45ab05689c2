// What the checks of dependencies work with.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "DependencyCommandRunner.h"

namespace tarnbeck {

// After how long a child is ended.
struct DependencyTimeouts {
    std::chrono::nanoseconds nodeOutdated = std::chrono::seconds(150);
    std::chrono::nanoseconds expoCheck = std::chrono::seconds(120);
    std::chrono::nanoseconds pythonOutdated = std::chrono::seconds(90);
    std::chrono::nanoseconds pythonList = std::chrono::seconds(30);
    std::chrono::nanoseconds pythonMatchScore = std::chrono::seconds(20);
    std::chrono::nanoseconds pythonBlocked = std::chrono::seconds(25);
    std::chrono::nanoseconds pythonOrigins = std::chrono::seconds(20);
    std::chrono::nanoseconds pypi = std::chrono::seconds(120);
    std::chrono::nanoseconds installStep = std::chrono::seconds(900);
};

struct DependencyTools {
    CommandRunner runCommand;  // blocks; called off the main thread, by several threads at once
    // Where `uv` may be, in this order; no search path is used.
    std::vector<std::string> uvCandidates;
    DependencyTimeouts timeouts = {};

    // Those of the running program. `launcher` must outlive them.
    static DependencyTools ordinary(const std::string& home, ProcessLauncher& launcher) {
        const DependencyCommandRunner runner(home, launcher);
        return {
            .runCommand = [runner](const Command& command) { return runner.runCommand(command); },
            .uvCandidates = ordinaryUvCandidates(home)};
    }
    static std::vector<std::string> ordinaryUvCandidates(const std::string& home) {
        return {home + "/.local/bin/uv", "/opt/homebrew/bin/uv", "/usr/local/bin/uv",
                "/usr/bin/uv"};
    }
};

}  // namespace tarnbeck
