#include <algorithm>

#include "DependencyVersion.h"
#include "Fuzzing.h"

// The first line is one version, the rest another.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnbeck;
    const std::string_view text = textOf(data, size);
    const std::string_view current = text.substr(0, text.find('\n'));
    const std::string_view latest = text.substr(std::min(text.size(), current.size() + 1));
    promise(!(isOlder(current, latest) && isOlder(latest, current)));
    const bool isStep =
        infer({.current = current, .latest = latest}) != DependencyUpdateType::unknown;
    promise(isStep == isOlder(current, latest));
    if (const auto components = parseVersionComponents(current)) {
        for (const auto number : *components) promise(number >= 0);
    }
    return 0;
}
