// A scan log in a temporary folder, and the messages that went into it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ScanLog.h"
#include "Simulation.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

struct ObservedLog {
    explicit ObservedLog(Simulation& simulation)
        : log({.home = folder.path()}, simulation.loop, simulation.queues) {}

    TemporaryFolder folder;
    std::vector<std::string> lines;
    ScanLog log;
    ScanLog::Observers::Token token =
        log.observe([this](std::string_view line) { lines.emplace_back(line); });
};

}  // namespace tarnbeck::testing
