#include "StatusBarContent.h"

#include <algorithm>

#include <fmt/format.h>

namespace tarnbeck {
namespace {

// What is always shown.
std::vector<StatusPill> pills(const StatusValues& values) {
    std::vector<StatusPill> result = {{.symbol = "checkmark.circle.fill",
                                       .text = fmt::format("{} healthy", values.healthy),
                                       .color = StatusColor::green,
                                       .isProminent = true}};
    if (values.attention > 0) {
        result.push_back({.symbol = "exclamationmark.triangle.fill",
                          .text = fmt::format("{} need attention", values.attention),
                          .color = StatusColor::orange,
                          .isProminent = true});
    }
    return result;
}

std::vector<StatusPill> detailPills(const StatusValues& values) {
    std::string dependencies = fmt::format("Deps {}", values.dependencyAttention);
    if (values.syncNeeded > 0) dependencies += fmt::format(" · Sync {}", values.syncNeeded);
    return {{.symbol = "arrow.triangle.branch", .text = fmt::format("Git {}", values.gitAttention)},
            {.symbol = "exclamationmark.bubble",
             .text = fmt::format("Issues {}", values.issueAttention)},
            {.symbol = "shippingbox", .text = dependencies}};
}

std::vector<StatusPill> trailingDetails(const StatusValues& values) {
    std::vector<StatusPill> result;
    if (values.checking > 0) {
        result.push_back(
            {.text = fmt::format("Checking {}", values.checking), .color = StatusColor::blue});
    }
    if (values.sinceIssueRefresh) {
        result.push_back(
            {.text = fmt::format("Issues {} ago", elapsedText(*values.sinceIssueRefresh))});
    }
    if (values.sinceScan) {
        result.push_back(
            {.symbol = "clock.arrow.circlepath",
             .text = fmt::format("Last scan: {} ago", elapsedText(*values.sinceScan))});
    }
    return result;
}

}  // namespace

StatusBar statusBarContent(const StatusValues& values) {
    return {.pills = pills(values),
            .detailPills = detailPills(values),
            .trailingDetails = trailingDetails(values)};
}

std::string elapsedText(std::chrono::nanoseconds elapsed) {
    using std::chrono::floor;
    const auto held = std::max(elapsed, std::chrono::nanoseconds(0));
    if (const auto days = floor<std::chrono::days>(held); days.count() > 0) {
        return fmt::format("{}d", days.count());
    }
    if (const auto hours = floor<std::chrono::hours>(held); hours.count() > 0) {
        return fmt::format("{}h", hours.count());
    }
    if (const auto minutes = floor<std::chrono::minutes>(held); minutes.count() > 0) {
        return fmt::format("{}m", minutes.count());
    }
    return fmt::format("{}s", floor<std::chrono::seconds>(held).count());
}

}  // namespace tarnbeck
