// The JSON shapes that scripts rely on.
#pragma once

#include <string>
#include <vector>

#include "GitRepository.h"
#include "JsonCoding.h"

namespace tarnbeck::cli {

// Dates in ISO 8601, absent values as null.
inline constexpr JsonStyle outputStyle{.absent = JsonStyle::Absent::asNull,
                                       .dates = JsonStyle::Dates::iso8601};

// The record's fields in declared order, and behind them `isClean`, `statusIcon`, `statusColor`
// and `summaryParts`.
JsonValue repositoryJson(const GitRepository& repository);

// One array, one element a line, with a line feed at the end.
std::string jsonArrayText(const std::vector<JsonValue>& elements);

}  // namespace tarnbeck::cli
