// The lines of a log that is written at the time where tests begin.
#pragma once

#include <string>
#include <string_view>

namespace tarnbeck::testing {

inline constexpr std::string_view stamp = "[2026-03-01T12:00:00Z] ";

inline std::string line(const std::string& message) {
    return std::string(stamp) + message + "\n";
}

}  // namespace tarnbeck::testing
