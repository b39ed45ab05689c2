#include "Base64.h"

#include "Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnbeck;
    const auto text = textOf(data, size);
    promise(decodedBase64(base64(text)) == text);
    const auto bytes = decodedBase64(text);
    promise(!bytes || base64(*bytes) == text);
    return 0;
}
