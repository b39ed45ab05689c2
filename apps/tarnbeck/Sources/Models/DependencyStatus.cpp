#include "DependencyStatus.h"

#include <algorithm>
#include <vector>

#include <fmt/format.h>

#include "Text.h"

namespace tarnbeck {
namespace {

std::int64_t countOf(const ImmutableList<DependencyUpdate>& updates, DependencyUpdateType type) {
    return std::ranges::count(updates, type, &DependencyUpdate::updateType);
}

bool anyHas(const DependencySummary& summary, DependencyHealth status) {
    return std::ranges::find(summary.ecosystems, status, &DependencyEcosystemResult::status) !=
           summary.ecosystems.end();
}

template <class Count>
std::int64_t sumOver(const DependencySummary& summary, Count count) {
    std::int64_t sum = 0;
    for (const auto& result : summary.ecosystems) sum += count(result);
    return sum;
}

std::string updatePart(const DependencySummary& summary) {
    const std::int64_t updates = summary.actionableUpdateCount();
    const std::int64_t majors = summary.majorUpdateCount();
    if (majors < 1) return fmt::format("{} updateable", updates);
    return fmt::format("{} updateable ({} major)", updates, majors);
}

// The updates that can be taken, where they count, and what keeps the others.
std::string updatesInWords(const DependencySummary& summary, bool withActionable) {
    std::vector<std::string> parts;
    if (withActionable) parts.push_back(updatePart(summary));
    const std::int64_t blocked =
        sumOver(summary, [](const auto& result) { return result.blockedUpdateCount(); });
    const std::int64_t limited =
        sumOver(summary, [](const auto& result) { return result.limitedUpdateCount(); });
    if (blocked >= 1) parts.push_back(fmt::format("{} blocked", blocked));
    if (limited >= 1) parts.push_back(fmt::format("{} limited", limited));
    if (summary.hasSyncNeeded()) parts.emplace_back("sync needed");
    return joined(parts, " · ");
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

std::int64_t DependencyEcosystemResult::headlineCount() const {
    if (const std::int64_t actionable = actionableUpdateCount(); actionable != 0) return actionable;
    const std::int64_t constraints = limitedUpdateCount() + blockedUpdateCount();
    if (constraints >= 1) return constraints;
    return status == DependencyHealth::syncNeeded ? 1 : 0;
}

std::int64_t DependencySummary::actionableUpdateCount() const {
    return sumOver(*this, [](const auto& result) { return result.actionableUpdateCount(); });
}

std::int64_t DependencySummary::constraintCount() const {
    return sumOver(*this, [](const auto& result) {
        return result.limitedUpdateCount() + result.blockedUpdateCount();
    });
}

std::int64_t DependencySummary::majorUpdateCount() const {
    return sumOver(*this, [](const auto& result) {
        return countOf(result.updates, DependencyUpdateType::major);
    });
}

std::int64_t DependencySummary::headlineCount() const {
    if (const std::int64_t actionable = actionableUpdateCount(); actionable >= 1) return actionable;
    if (const std::int64_t constraints = constraintCount(); constraints >= 1) return constraints;
    return std::ranges::count(ecosystems, DependencyHealth::syncNeeded,
                              &DependencyEcosystemResult::status);
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

std::optional<std::string> DependencySummary::inlineSummary() const {
    switch (status()) {
        case DependencyHealth::checking:
            return "checking dependencies…";
        case DependencyHealth::upToDate:
            return "dependencies up to date";
        case DependencyHealth::syncNeeded:
            return "install sync needed";
        case DependencyHealth::constraints:
            return updatesInWords(*this, false);
        case DependencyHealth::updatesAvailable:
            return updatesInWords(*this, true);
        case DependencyHealth::notApplicable:
            return std::nullopt;
        case DependencyHealth::unknown:
            return "dependency state unknown";
        case DependencyHealth::error:
            return "dependency check failed";
    }
    return std::nullopt;
}

}  // namespace tarnbeck
