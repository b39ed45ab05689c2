#include "Dates.h"

#include <chrono>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

namespace tarnbeck {
namespace {

using std::chrono::duration;

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

// Whole seconds and their fraction go separate ways, so that neither number loses its last digit
// to the size of the other.
double secondsSince2001(Date date) {
    const auto sinceReference = date - referenceDate;
    const auto whole = std::chrono::floor<std::chrono::seconds>(sinceReference);
    const duration<double> fraction = sinceReference - whole;
    return static_cast<double>(whole.count()) + fraction.count();
}

Date dateFromSecondsSince2001(double seconds) {
    // Beyond about 290 years a date can't be told in this clock; it is held at the end of its
    // range.
    const double limit = duration<double>(Date::max() - referenceDate).count() * 0.99;
    const double held = std::isfinite(seconds) ? std::fmin(std::fmax(seconds, -limit), limit) : 0;
    const double whole = std::floor(held);
    return referenceDate + std::chrono::seconds(static_cast<std::int64_t>(whole)) +
           std::chrono::round<Date::duration>(duration<double>(held - whole));
}

}  // namespace tarnbeck
