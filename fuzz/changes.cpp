#include "Fuzzing.h"
#include "GitOutputParsers.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const auto& change : tarnbeck::GitOutputParsers::parseChanges(textOf(data, size))) {
        promise(!change.status.empty() && change.status.size() <= 2);
        promise(change.filePath.starts_with(change.directoryPath()));
        promise(!change.canDiscard() || change.status.find('R') == std::string::npos);
    }
    return 0;
}
