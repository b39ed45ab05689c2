// What is said when the user's watches are used up.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnbeck {

// A line for the scan log: which roots fall back to the timer, how many watches are missing, and
// the command that allows that many. `limit` is what the system allows now, where that is known.
std::string watchShortageLine(const std::vector<std::string>& roots, std::int64_t missing,
                              std::optional<std::int64_t> limit);

}  // namespace tarnbeck
