// What a second copy wants of the first.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace single_instance {

// Wide enough for every year of four digits.
using WallTime = std::chrono::sys_time<std::chrono::microseconds>;

struct DuplicateLaunchRequest {
    std::vector<std::string> arguments;
    std::vector<std::string> fileURLs;
    WallTime createdAt;

    bool operator==(const DuplicateLaunchRequest&) const = default;
};

// A JSON object with the names of the fields as keys. The time is cut to whole seconds, in UTC;
// bytes that are not UTF-8 are replaced by U+FFFD.
std::string encoded(const DuplicateLaunchRequest& request);

// Absent where a key is missing or of another type, or the time is not of the form
// "2026-03-01T12:00:00Z" (or with an offset, as "+01:00").
std::optional<DuplicateLaunchRequest> decoded(std::string_view json);

}  // namespace single_instance
