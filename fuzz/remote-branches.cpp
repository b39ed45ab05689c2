#include "Fuzzing.h"
#include "GitOutputParsers.h"
#include "GitReferenceVisibility.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto branches = tarnbeck::GitOutputParsers::parseRemoteBranches(textOf(data, size));
    for (const auto& branch : branches) promise(branch.find("HEAD") == std::string::npos);
    promise(tarnbeck::GitReferenceVisibility::visibleRemoteBranches(branches).size() <=
            branches.size());
    return 0;
}
