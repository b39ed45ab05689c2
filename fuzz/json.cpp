#include "Json.h"

#include "Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using tarnbeck::JsonLayout, tarnbeck::jsonText, tarnbeck::parsedJson;
    const auto json = parsedJson(textOf(data, size));
    if (!json) return 0;
    // A written number has no type any more (-0.0 reads back as the integer 0); from then on
    // nothing changes.
    const auto again = parsedJson(jsonText(*json));
    promise(static_cast<bool>(again));
    const auto pretty = parsedJson(jsonText(*again, JsonLayout::prettySortedKeys));
    promise(pretty && *pretty == *again);
    return 0;
}
