#include "Fuzzing.h"
#include "GitOutputParsers.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const auto& branch : tarnbeck::GitOutputParsers::parseLocalBranches(textOf(data, size))) {
        promise(!branch.name.empty());
        promise(branch.name.find_first_of("\t\n") == std::string::npos);
    }
    return 0;
}
