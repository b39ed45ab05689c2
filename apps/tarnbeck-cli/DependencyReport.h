// What was found of repositories' dependencies, for people and for scripts. Pure; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Dates.h"
#include "DependencyStatus.h"
#include "Json.h"
#include "StatusTable.h"

namespace tarnbeck::cli {

struct DependencyAnswer {
    std::string path;
    std::string name;  // as it is shown, fit to be printed
    DependencySummary summary;
    std::optional<Date> asOf = {};  // of a verdict that is older than was asked for
};

// When the verdict is from before `freshSince`: its date.
std::optional<Date> dateIfOlder(const DependencySummary& summary, Date freshSince);

// The repository's heading; for each project a line, a table of what is behind, and the message.
// Why a check failed is not in it. Nothing where there is no project. Every line ends with a line
// feed. On a terminal the tables are made to fit, and messages are broken between words.
std::string dependencyList(const DependencyAnswer& answer, const TableStyle& style);

// "3 repositories · 4 projects · 12 updateable (2 major) · 1 blocked · 3 limited · 1 sync needed ·
// 1 unknown · 1 check failed · 1 without projects"
std::string dependencyTotals(const std::vector<DependencyAnswer>& answers);

// For each check that failed, "/home/you/weather (web): the reason", of one or more lines.
std::vector<std::string> dependencyFailures(const std::string& path,
                                            const DependencySummary& summary);

// `path`, `status`, `inlineSummary` and `summary`.
JsonObject dependencyJson(const std::string& path, const DependencySummary& summary);

// The project as people are shown it and name it: "." for the repository's own.
std::string shownProject(const DependencyEcosystemResult& result);

std::string_view inWords(DependencyHealth status);
std::string_view inWords(DependencyUpdateType type);
std::string_view inWords(DependencyUpdateOrigin origin);  // empty for an unknown one

}  // namespace tarnbeck::cli
