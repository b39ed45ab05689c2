// What the status bar says. Pure, any thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "MainViewContent.h"

namespace tarnbeck {

// Counts of repositories, of all of them, and the ages of what was found.
struct StatusValues {
    std::int64_t healthy = 0;    // need no attention in the current domain
    std::int64_t attention = 0;  // all others
    std::int64_t gitAttention = 0;
    std::int64_t issueAttention = 0;
    std::int64_t dependencyAttention = 0;
    std::int64_t syncNeeded = 0;  // of those
    std::int64_t checking = 0;    // whose dependencies are being checked
    std::optional<std::chrono::nanoseconds> sinceIssueRefresh;
    std::optional<std::chrono::nanoseconds> sinceScan;
};

StatusBar statusBarContent(const StatusValues& values);

// In the largest unit that fits, cut down to a whole number: "3d", "2h", "5m", "40s". A negative
// time counts as none, "0s".
std::string elapsedText(std::chrono::nanoseconds elapsed);

}  // namespace tarnbeck
