#include "DependencyScanner+Discovery.h"
#include "Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const auto& pattern : tarnbeck::DependencyScanner::packagePatternsIn(textOf(data, size))) {
        promise(!pattern.empty());
        promise(pattern.find_first_of(" '\"") != 0 && pattern.find('\n') == std::string::npos);
    }
    return 0;
}
