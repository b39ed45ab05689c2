// Dates as text and as numbers. Pure, any thread.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "Record.h"

namespace tarnbeck {

// ISO 8601 in UTC, cut to whole seconds: "2026-03-01T12:00:00Z".
std::string iso8601(Date date);

// The moment that a text like "2026-03-01T12:00:00Z" or "2026-03-01T13:00:00+01:00" tells; absent
// for any other form (fractions of a second among them) and for days and times that don't exist.
std::optional<std::chrono::sys_seconds> dateFromIso8601(std::string_view text);

// Seconds since 2001-01-01 00:00:00 UTC, the form of dates in the caches.
double secondsSince2001(Date date);
Date dateFromSecondsSince2001(double seconds);

}  // namespace tarnbeck
