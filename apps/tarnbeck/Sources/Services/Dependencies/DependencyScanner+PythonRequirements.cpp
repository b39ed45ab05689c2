#include <algorithm>
#include <array>
#include <utility>

#include "DependencyMarkers.h"
#include "DependencyScanner+PythonRequirements.h"
#include "DependencyVersion.h"
#include "FileSystem.h"
#include "RegularExpression.h"
#include "Text.h"

namespace tarnbeck::DependencyScanner {
namespace {

constexpr std::array<const char*, 3> requirementFiles = {
    "/requirements.txt", "/requirements-housekeeping.txt", "/requirements-dev.txt"};

// The name, and the version behind the operator.
const RegularExpression& pinOrMinimum() {
    static const RegularExpression expression(
        R"(^([A-Za-z0-9_.-]+)(?:\[[A-Za-z0-9_,.-]+\])?(?:==|>=)\s*([A-Za-z0-9_.+-]+))",
        RegularExpression::Anchors::text);
    return expression;
}

// Whether `constraint` is higher than the one that stands already.
bool isHigherThan(const PythonRequirementConstraint& standing,
                  const PythonRequirementConstraint& constraint) {
    return isOlder(standing.minimumVersion, constraint.minimumVersion);
}

}  // namespace

std::string normalizedPythonName(std::string_view name) {
    std::string normalized = lowercased(trimmingWhitespaceAndNewlines(name));
    std::ranges::replace(normalized, '_', '-');
    return normalized;
}

std::optional<PythonRequirementConstraint> parsePythonRequirement(std::string_view line) {
    line = trimmingWhitespaceAndNewlines(line.substr(0, line.find('#')));
    // Most other lines have no operator that counts: they need not be looked at closely.
    if (line.find('=') == std::string_view::npos) return std::nullopt;
    auto captures = pinOrMinimum().matchAtBeginning(line);
    if (!captures) return std::nullopt;
    return PythonRequirementConstraint{.package = std::move((*captures)[0]),
                                       .minimumVersion = std::move((*captures)[1])};
}

PythonConstraints lowestPythonRequirements(const std::vector<std::string>& texts) {
    PythonConstraints constraints;
    for (const std::string& text : texts) {
        for (std::string_view rest = text; !rest.empty();) {
            auto constraint = parsePythonRequirement(takingLineAtNewline(rest));
            if (!constraint) continue;
            const std::string key = normalizedPythonName(constraint->package);
            const auto standing = constraints.find(key);
            if (standing == constraints.end()) {
                constraints.emplace(key, *std::move(constraint));
            } else if (!isHigherThan(standing->second, *constraint)) {
                standing->second = *std::move(constraint);
            }
        }
    }
    return constraints;
}

PythonConstraints pythonRequirements(const std::string& projectPath) {
    std::vector<std::string> texts;
    for (const char* name : requirementFiles) {
        const Result<std::string> bytes = readFile(projectPath + name, largestManifest);
        if (bytes) texts.emplace_back(decodedUtf8(*bytes));
    }
    return lowestPythonRequirements(texts);
}

ReconciledPythonUpdates reconcilePythonUpdates(std::vector<DependencyUpdate> updates,
                                               const std::string& projectPath) {
    const PythonConstraints constraints =
        updates.empty() ? PythonConstraints{} : pythonRequirements(projectPath);
    ReconciledPythonUpdates reconciled;
    for (DependencyUpdate& update : updates) {
        const auto asked = constraints.find(normalizedPythonName(update.package));
        const bool hasDrifted = asked != constraints.end() &&
                                isOlder(update.currentVersion, asked->second.minimumVersion);
        if (hasDrifted) {
            ++reconciled.driftedPackages;
            update.currentVersion = asked->second.minimumVersion;
            if (update.currentVersion == update.latestVersion) continue;
            update.updateType =
                infer({.current = update.currentVersion, .latest = update.latestVersion});
        }
        reconciled.updates.push_back(std::move(update));
    }
    return reconciled;
}

}  // namespace tarnbeck::DependencyScanner
