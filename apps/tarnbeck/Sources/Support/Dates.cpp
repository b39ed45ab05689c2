#include "Dates.h"

#include <fmt/format.h>

#include <chrono>
#include <cmath>

namespace tarnbeck {
namespace {

using std::chrono::duration;
using std::chrono::duration_cast;

constexpr Date referenceDate =
    std::chrono::sys_days{std::chrono::year{2001} / std::chrono::January / 1};

}  // namespace

std::string iso8601(Date date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date);
    const auto day = std::chrono::floor<std::chrono::days>(seconds);
    const std::chrono::year_month_day calendar{day};
    const std::chrono::hh_mm_ss time{seconds - day};
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(calendar.year()),
                       static_cast<unsigned>(calendar.month()),
                       static_cast<unsigned>(calendar.day()), time.hours().count(),
                       time.minutes().count(), time.seconds().count());
}

double secondsSince2001(Date date) { return duration<double>(date - referenceDate).count(); }

Date dateFromSecondsSince2001(double seconds) {
    // Beyond about 290 years a date can't be told in this clock; it is held at the end of its range.
    const double limit = duration<double>(Date::max() - referenceDate).count() * 0.99;
    const double held = std::isfinite(seconds) ? std::fmin(std::fmax(seconds, -limit), limit) : 0;
    return referenceDate + std::chrono::round<Date::duration>(duration<double>(held));
}

}  // namespace tarnbeck
