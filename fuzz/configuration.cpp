#include "AppConfiguration.h"
#include "Fuzzing.h"
#include "JsonCoding.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnbeck;
    const auto configuration = AppConfiguration::decoded(textOf(data, size));
    if (!configuration) return 0;
    promise(configuration->appBackdropOpacity >= 0 && configuration->appBackdropOpacity <= 1);
    const auto again = AppConfiguration::decoded(jsonText(encodedJson(*configuration)));
    promise(again && *again == *configuration);
    return 0;
}
