// What the checks of all managers share: fields of foreign reports, and how findings are told.
// Pure; any thread.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Json.h"

namespace tarnbeck::DependencyScanner {

// The first of the keys whose value is a text that is not empty, or a number (as a decimal: 1.10 is
// "1.1", 1e3 is "1000").
std::optional<std::string> firstField(const JsonObject& object,
                                      std::span<const std::string_view> keys);

// Each text once, sorted by bytes.
std::vector<std::string> sortedUnique(std::vector<std::string> texts);
// Standardized paths, sorted by bytes.
std::vector<std::string> standardizedSorted(const std::vector<std::string>& paths);

// "3 update(s) blocked by constraints: A | B | +1 more"; absent without reasons. `what` is the text
// between the count and the reasons, blanks and colon included.
std::optional<std::string> reasonsMessage(const std::vector<std::string>& reasons,
                                          std::string_view what);

// Those that are there and not empty, with " • " between them; absent when none is left.
std::optional<std::string> joinDependencyMessages(
    const std::vector<std::optional<std::string>>& messages);

// The JSON object that a file holds; absent when it can't be read or holds anything else.
std::optional<JsonObject> jsonObjectInFile(const std::string& path);

}  // namespace tarnbeck::DependencyScanner
