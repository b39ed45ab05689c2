#include "WatchShortage.h"

#include <algorithm>
#include <bit>
#include <cstddef>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace tarnbeck {
namespace {

std::string firstOf(const std::vector<std::string>& roots) {
    constexpr std::size_t shown = 3;
    const auto count = std::min(roots.size(), shown);
    std::string text =
        fmt::format("{}", fmt::join(roots.begin(), roots.begin() + std::ptrdiff_t(count), ", "));
    if (roots.size() > shown) text += fmt::format(" and {} more", roots.size() - shown);
    return text;
}

// The next power of two, which is how such limits are set: it leaves room to grow, and a watch that
// is allowed but not set costs nothing.
std::uint64_t sufficient(std::int64_t needed) {
    return std::bit_ceil(static_cast<std::uint64_t>(needed));
}

}  // namespace

std::string watchShortageLine(const std::vector<std::string>& roots, std::int64_t missing,
                              std::optional<std::int64_t> limit) {
    return fmt::format(
        "FSEVENT watch limit reached: falling back to the timer for {}; watches missing: {}; raise "
        "the limit with: sysctl fs.inotify.max_user_watches={}",
        firstOf(roots), missing, sufficient(limit.value_or(0) + missing));
}

}  // namespace tarnbeck
