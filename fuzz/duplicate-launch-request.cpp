#include "DuplicateLaunchRequest.h"
#include "Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace single_instance;
    const auto request = decoded(textOf(data, size));
    if (!request) return 0;
    promise(decoded(encoded(*request)) == request);
    return 0;
}
