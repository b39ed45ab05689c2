#include <algorithm>

#include "DependencyScanner+NodeReport.h"
#include "Fuzzing.h"
#include "Text.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnbeck;
    using namespace tarnbeck::DependencyScanner;
    const auto text = decodedUtf8(textOf(data, size));
    const auto json = extractLeadingJSON(text);
    const auto packages = parseNodeOutdatedPackages(text);
    promise(!json || text.ends_with(*json));
    promise(json || !packages);
    if (!packages) return 0;

    const auto facts = reconcileNodeOutdatedPackages(*packages);
    promise(facts.updates.size() + facts.syncPackages.size() <= packages->size());
    promise(std::ranges::is_sorted(facts.syncPackages));
    promise(nodeSyncMessage(facts.syncPackages).has_value() == !facts.syncPackages.empty());
    // Reconciled updates lead forward already: only repeated names can go.
    const auto normalized = normalizedNodeUpdates(facts.updates);
    promise(normalized.size() <= facts.updates.size());
    promise(normalized.empty() == facts.updates.empty());
    promise(normalizedNodeUpdates(normalized) == normalized);
    return 0;
}
