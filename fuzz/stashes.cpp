#include "Fuzzing.h"
#include "GitOutputParsers.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const auto& stash : tarnbeck::GitOutputParsers::parseStashes(textOf(data, size))) {
        promise(!stash.reference.empty());
        promise(stash.reference.find('\x1F') == std::string::npos);
    }
    return 0;
}
