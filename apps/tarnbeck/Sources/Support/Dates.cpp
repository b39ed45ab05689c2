#include "Dates.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include <fmt/format.h>

namespace tarnbeck {
namespace {

using std::chrono::duration;

constexpr Date referenceDate =
    std::chrono::sys_days{std::chrono::year{2001} / std::chrono::January / 1};

constexpr bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

// The text has the form of `pattern`, where "0" stands for any digit.
constexpr bool hasForm(std::string_view text, std::string_view pattern) {
    return std::ranges::equal(text, pattern, [](char character, char expected) {
        return expected == '0' ? isDigit(character) : character == expected;
    });
}

constexpr int number(std::string_view text, std::size_t at, std::size_t digits) {
    int value = 0;
    for (const char digit : text.substr(at, digits)) value = value * 10 + (digit - '0');
    return value;
}

// What a zone like "Z" or "-05:30" is ahead of UTC.
std::optional<std::chrono::minutes> zoneOffset(std::string_view zone) {
    if (zone == "Z") return std::chrono::minutes(0);
    if (!hasForm(zone, "+00:00") && !hasForm(zone, "-00:00")) return std::nullopt;
    const int hours = number(zone, 1, 2);
    const int minutes = number(zone, 4, 2);
    if (hours > 23 || minutes > 59) return std::nullopt;
    const auto offset = std::chrono::hours(hours) + std::chrono::minutes(minutes);
    return zone[0] == '-' ? -offset : offset;
}

}  // namespace

std::optional<std::chrono::sys_seconds> dateFromIso8601(std::string_view text) {
    constexpr std::string_view pattern = "0000-00-00T00:00:00";
    if (!hasForm(text.substr(0, pattern.size()), pattern)) return std::nullopt;
    const auto offset = zoneOffset(text.substr(pattern.size()));
    const std::chrono::year_month_day day{
        std::chrono::year{number(text, 0, 4)},
        std::chrono::month{static_cast<unsigned>(number(text, 5, 2))},
        std::chrono::day{static_cast<unsigned>(number(text, 8, 2))}};
    const std::chrono::hours hours(number(text, 11, 2));
    const std::chrono::minutes minutes(number(text, 14, 2));
    const std::chrono::seconds seconds(number(text, 17, 2));
    if (!offset || !day.ok() || hours.count() > 23 || minutes.count() > 59 ||
        seconds.count() > 59) {
        return std::nullopt;
    }
    return std::chrono::sys_days{day} + hours + minutes + seconds - *offset;
}

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
