#include "Fuzzing.h"
#include "GitOutputParsers.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const auto& tag : tarnbeck::GitOutputParsers::parseTags(textOf(data, size))) {
        promise(!tag.empty() && tag.find('\n') == std::string::npos);
    }
    return 0;
}
