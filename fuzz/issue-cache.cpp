#include <string>

#include "Fuzzing.h"
#include "GitHubIssueCacheFormat.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnbeck::GitHubIssueCacheFormat;
    const auto encoded = [](const Entries& entries) {
        Encoder encoder;
        std::string text;
        for (const std::string_view piece : encoder.pieces(entries)) text += piece;
        return text;
    };
    const auto entries = decoded(textOf(data, size));
    if (!entries) return 0;
    // Times are rounded to what the number of seconds can tell; from then on nothing changes.
    const auto again = decoded(encoded(*entries));
    promise(again && again->size() == entries->size());
    promise(decoded(encoded(*again)) == again);
    return 0;
}
