#include "DependencyCacheFormat.h"
#include "Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnbeck::DependencyCacheFormat;
    const auto entries = decoded(textOf(data, size));
    if (!entries) return 0;
    // Times are rounded to what the number of seconds can tell; from then on nothing changes.
    const auto again = decoded(encoded(*entries));
    promise(again && again->size() == entries->size());
    promise(decoded(encoded(*again)) == again);
    for (const auto& [path, entry] : *again) {
        promise(entry.summary.inlineSummary().has_value() == !entry.summary.ecosystems.empty());
        promise(entry.summary.headlineCount() >= 0);
    }
    return 0;
}
