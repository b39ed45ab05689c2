#include "DependencyStatus.h"

#include <algorithm>

#include <fmt/format.h>

namespace tarnbeck {
namespace {

std::int64_t countOf(const ImmutableList<DependencyUpdate>& updates, DependencyUpdateType type) {
    return std::ranges::count(updates, type, &DependencyUpdate::updateType);
}

bool anyHas(const DependencySummary& summary, DependencyHealth status) {
    return std::ranges::find(summary.ecosystems, status, &DependencyEcosystemResult::status) !=
           summary.ecosystems.end();
}

}  // namespace

const DependencySummary DependencySummary::notApplicable{};

std::string DependencyUpdate::id() const {
    return fmt::format("{}-{}", rawValue(ecosystem), package);
}

std::string DependencyEcosystemResult::id() const {
    if (project && !project->empty()) {
        return fmt::format("{}-{}-{}", rawValue(ecosystem), *project, manager);
    }
    return fmt::format("{}-{}-{}-{}", rawValue(ecosystem), manager, updates.size(),
                       message.value_or(""));
}

std::int64_t DependencyEcosystemResult::actionableUpdateCount() const {
    return static_cast<std::int64_t>(updates.size()) - limitedUpdateCount() - blockedUpdateCount();
}

std::int64_t DependencyEcosystemResult::limitedUpdateCount() const {
    return countOf(updates, DependencyUpdateType::constrained);
}

std::int64_t DependencyEcosystemResult::blockedUpdateCount() const {
    return countOf(updates, DependencyUpdateType::blocked);
}

std::int64_t DependencySummary::actionableUpdateCount() const {
    std::int64_t sum = 0;
    for (const auto& result : ecosystems) sum += result.actionableUpdateCount();
    return sum;
}

std::int64_t DependencySummary::constraintCount() const {
    std::int64_t sum = 0;
    for (const auto& result : ecosystems) {
        sum += result.limitedUpdateCount() + result.blockedUpdateCount();
    }
    return sum;
}

bool DependencySummary::hasSyncNeeded() const {
    return std::ranges::any_of(ecosystems, [](const DependencyEcosystemResult& result) {
        return result.status == DependencyHealth::syncNeeded ||
               (result.message &&
                result.message->find("Run install to sync.") != std::string::npos);
    });
}

bool DependencySummary::hasErrors() const {
    return anyHas(*this, DependencyHealth::error);
}

bool DependencySummary::hasUnknown() const {
    return anyHas(*this, DependencyHealth::unknown);
}

DependencyHealth DependencySummary::status() const {
    if (ecosystems.empty()) return DependencyHealth::notApplicable;
    if (hasErrors()) return DependencyHealth::error;
    if (actionableUpdateCount() > 0) return DependencyHealth::updatesAvailable;
    if (constraintCount() > 0) return DependencyHealth::constraints;
    if (hasSyncNeeded()) return DependencyHealth::syncNeeded;
    if (anyHas(*this, DependencyHealth::checking)) return DependencyHealth::checking;
    if (hasUnknown()) return DependencyHealth::unknown;
    return DependencyHealth::upToDate;
}

}  // namespace tarnbeck
