// Dates as text and as numbers. Pure, any thread.
#pragma once

#include <string>

#include "Record.h"

namespace tarnbeck {

// ISO 8601 in UTC, cut to whole seconds: "2026-03-01T12:00:00Z".
std::string iso8601(Date date);

// Seconds since 2001-01-01 00:00:00 UTC, the form of dates in the caches.
double secondsSince2001(Date date);
Date dateFromSecondsSince2001(double seconds);

}  // namespace tarnbeck
