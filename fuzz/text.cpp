#include "Text.h"

#include "Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnbeck;
    const auto text = textOf(data, size);
    promise(isValidUtf8(replacingInvalidUtf8(text)));
    promise((replacingInvalidUtf8(text) == text) == isValidUtf8(text));
    promise(isValidUtf8(printable(text)) && isValidUtf8(lowercased(text)));
    promise(trimmingNewlines(trimmingNewlines(text)) == trimmingNewlines(text));
    promise(trimmingWhitespaceAndNewlines(text).size() <= trimmingNewlines(text).size());
    promise(decodedUtf8(text).size() <= size);
    promise(displayWidth(elidedAtEnd(text, size % 32)) <= size % 32);
    return 0;
}
