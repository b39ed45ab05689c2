// JSON as the files and the outputs need it, on Boost.JSON. Pure; any thread.
#pragma once

#include <string>
#include <string_view>

#include <boost/json/storage_ptr.hpp>
#include <boost/json/value.hpp>

#include "Result.h"

namespace tarnbeck {

using JsonValue = boost::json::value;
using JsonObject = boost::json::object;
using JsonArray = boost::json::array;

// Strict JSON (RFC 8259); a leading byte-order mark is passed over, the last of equal keys wins,
// and more than 64 levels of nesting are refused. The failure says where: "line 3: syntax error".
// Values that are only looked at and dropped are read faster into a `storage` of their own.
Result<JsonValue> parsedJson(std::string_view bytes, boost::json::storage_ptr storage = {});

enum class JsonLayout { compact, prettySortedKeys };

// Bytes that are not UTF-8 are replaced by U+FFFD; a number is the shortest decimal that reads
// back the same; keys stand in the order of the object, or sorted by bytes where asked.
std::string jsonText(const JsonValue& value, JsonLayout layout = JsonLayout::compact);

}  // namespace tarnbeck
