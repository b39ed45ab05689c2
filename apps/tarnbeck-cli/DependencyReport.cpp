#include "DependencyReport.h"

#include <algorithm>
#include <array>
#include <utility>

#include <fmt/format.h>

#include "ColumnLine.h"
#include "RepositoryJson.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

constexpr std::size_t projectIndent = 2;
constexpr std::size_t updateIndent = 4;
constexpr std::size_t widestCell = 60;

StatusColor colorOf(DependencyHealth status) {
    switch (status) {
        case DependencyHealth::checking:
            return StatusColor::blue;
        case DependencyHealth::upToDate:
            return StatusColor::green;
        case DependencyHealth::syncNeeded:
        case DependencyHealth::constraints:
            return StatusColor::yellow;
        case DependencyHealth::updatesAvailable:
            return StatusColor::orange;
        case DependencyHealth::error:
            return StatusColor::red;
        case DependencyHealth::notApplicable:
        case DependencyHealth::unknown:
            break;
    }
    return StatusColor::gray;
}

StatusColor colorOf(DependencyUpdateType type) {
    switch (type) {
        case DependencyUpdateType::major:
            return StatusColor::red;
        case DependencyUpdateType::minor:
            return StatusColor::orange;
        case DependencyUpdateType::patch:
            return StatusColor::green;
        case DependencyUpdateType::constrained:
            return StatusColor::yellow;
        case DependencyUpdateType::unknown:
            return StatusColor::blue;
        case DependencyUpdateType::blocked:
            break;
    }
    return StatusColor::gray;
}

struct Cell {
    std::string text;
    std::optional<StatusColor> color = {};
};

// A table whose rows begin at the same columns.
template <std::size_t columnCount>
struct Table {
    using Row = std::array<Cell, columnCount>;
    using Widths = std::array<std::size_t, columnCount>;

    std::size_t indent = 0;
    // The columns that give way: from this one on, and how many.
    std::size_t firstElastic = 0;
    std::size_t elasticCount = 1;
    Widths widths = {};

    void widenFor(const Row& row) {
        for (std::size_t index = 0; index < columnCount; ++index) {
            const std::size_t width = std::min(displayWidth(row[index].text), widestCell);
            widths[index] = std::max(widths[index], width);
        }
    }

    std::size_t total() const {
        std::size_t sum = indent;
        for (const std::size_t width : widths) sum += width > 0 ? width + ColumnLine::gap : 0;
        return sum - ColumnLine::gap;
    }

    // Takes columns from the widest that gives way, down to `least`, until all fit.
    void narrow(std::size_t columns, std::size_t least) {
        while (total() > columns) {
            const auto first = widths.begin() + firstElastic;
            const auto widest = std::max_element(first, first + elasticCount);
            if (*widest <= least) return;
            --*widest;
        }
    }

    std::string lineOf(const Row& row, const TableStyle& style) const {
        ColumnLine line("", indent);
        for (std::size_t index = 0; index < columnCount; ++index) {
            const Cell& cell = row[index];
            line.add(cell.text, widths[index], [&](const std::string& text) {
                return cell.color ? painted(text, *cell.color, style) : text;
            });
        }
        return line.take() + "\n";
    }
};

using ProjectTable = Table<4>;
using UpdateTable = Table<5>;

ProjectTable::Row rowOf(const DependencyEcosystemResult& result) {
    return {{{std::string(rawValue(result.ecosystem))},
             {printable(shownProject(result))},
             {printable(result.manager)},
             {std::string(inWords(result.status)), colorOf(result.status)}}};
}

UpdateTable::Row rowOf(const DependencyUpdate& update) {
    return {{{printable(update.package)},
             {printable(update.currentVersion)},
             {"→ " + printable(update.latestVersion)},
             {std::string(inWords(update.updateType)), colorOf(update.updateType)},
             {std::string(inWords(update.origin)), StatusColor::secondary}}};
}

ProjectTable projectTableOf(const DependencySummary& summary, const TableStyle& style) {
    ProjectTable table{.indent = projectIndent, .firstElastic = 1};
    for (const auto& result : summary.ecosystems) table.widenFor(rowOf(result));
    if (style.columns) table.narrow(*style.columns, 4);
    return table;
}

UpdateTable updateTableOf(const DependencySummary& summary, const TableStyle& style) {
    UpdateTable table{.indent = updateIndent, .elasticCount = 3};
    for (const auto& result : summary.ecosystems) {
        for (const auto& update : result.updates) table.widenFor(rowOf(update));
    }
    if (!style.columns) return table;
    table.narrow(*style.columns, 12);
    if (table.total() > *style.columns) table.widths.back() = 0;
    table.narrow(*style.columns, 4);
    return table;
}

// The text's own lines, broken between words where a terminal's are shorter; all indented.
std::string wrapped(std::string_view text, std::size_t indent, std::optional<std::size_t> columns) {
    std::string result;
    std::string line;
    const std::string margin(indent, ' ');
    const auto finish = [&] {
        if (!line.empty()) result += margin + std::exchange(line, {}) + "\n";
    };
    while (!text.empty()) {
        forEachPiece(takingLineAtNewline(text), ' ', [&](std::string_view raw) {
            const std::string word = printable(raw);
            const std::size_t width = indent + displayWidth(line) + 1 + displayWidth(word);
            if (columns && !line.empty() && width > *columns) finish();
            line += (line.empty() ? "" : " ") + word;
        });
        finish();
    }
    return result;
}

std::string heading(const DependencyAnswer& answer, const TableStyle& style) {
    std::string text = answer.name;
    if (const auto words = answer.summary.inlineSummary()) {
        text += "  " + painted(*words, colorOf(answer.summary.status()), style);
    }
    if (answer.asOf) text += ", as of " + iso8601(*answer.asOf);
    return text + "\n";
}

// All projects as if they were of one repository: the sums are the same.
DependencySummary together(const std::vector<DependencyAnswer>& answers) {
    std::vector<DependencyEcosystemResult> results;
    for (const DependencyAnswer& answer : answers) {
        results.insert(results.end(), answer.summary.ecosystems.begin(),
                       answer.summary.ecosystems.end());
    }
    return {.ecosystems = std::move(results)};
}

std::size_t projectsWith(DependencyHealth status, const DependencySummary& summary) {
    return static_cast<std::size_t>(
        std::ranges::count(summary.ecosystems, status, &DependencyEcosystemResult::status));
}

template <class Predicate>
std::size_t repositoriesWhere(const std::vector<DependencyAnswer>& answers, Predicate predicate) {
    return static_cast<std::size_t>(
        std::ranges::count_if(answers, predicate, &DependencyAnswer::summary));
}

// What can be updated and what is kept from it.
std::vector<std::string> updateTotals(const DependencySummary& summary) {
    std::vector<std::string> parts;
    std::int64_t blocked = 0;
    for (const auto& result : summary.ecosystems) blocked += result.blockedUpdateCount();
    const std::int64_t updates = summary.actionableUpdateCount();
    const std::int64_t majors = summary.majorUpdateCount();
    const std::int64_t limited = summary.constraintCount() - blocked;
    if (updates > 0) {
        parts.push_back(fmt::format("{} updateable", updates));
        if (majors > 0) parts.back() += fmt::format(" ({} major)", majors);
    }
    if (blocked > 0) parts.push_back(fmt::format("{} blocked", blocked));
    if (limited > 0) parts.push_back(fmt::format("{} limited", limited));
    return parts;
}

}  // namespace

std::optional<Date> dateIfOlder(const DependencySummary& summary, Date freshSince) {
    return summary.checkedAt && *summary.checkedAt < freshSince ? summary.checkedAt : std::nullopt;
}

std::string dependencyList(const DependencyAnswer& answer, const TableStyle& style) {
    if (answer.summary.ecosystems.empty()) return {};
    const ProjectTable projects = projectTableOf(answer.summary, style);
    const UpdateTable updates = updateTableOf(answer.summary, style);
    std::string text = heading(answer, style);
    for (const DependencyEcosystemResult& result : answer.summary.ecosystems) {
        text += projects.lineOf(rowOf(result), style);
        for (const auto& update : result.updates) text += updates.lineOf(rowOf(update), style);
        if (result.message && result.status != DependencyHealth::error) {
            text += wrapped(*result.message, updateIndent, style.columns);
        }
    }
    return text;
}

std::string dependencyTotals(const std::vector<DependencyAnswer>& answers) {
    const DependencySummary all = together(answers);
    std::vector<std::string> parts = {counted(answers.size(), "repository", "repositories")};
    const auto add = [&](std::size_t count, std::string_view one, std::string_view many) {
        if (count > 0) parts.push_back(counted(count, one, many));
    };
    add(all.ecosystems.size(), "project", "projects");
    for (std::string& part : updateTotals(all)) parts.push_back(std::move(part));
    add(repositoriesWhere(answers, [](const auto& each) { return each.hasSyncNeeded(); }),
        "sync needed", "syncs needed");
    add(projectsWith(DependencyHealth::unknown, all), "unknown", "unknown");
    add(projectsWith(DependencyHealth::error, all), "check failed", "checks failed");
    if (all.status() == DependencyHealth::upToDate) parts.emplace_back("all up to date");
    add(repositoriesWhere(answers, [](const auto& each) { return each.ecosystems.empty(); }),
        "without projects", "without projects");
    return joined(parts, " · ");
}

std::vector<std::string> dependencyFailures(const std::string& path,
                                            const DependencySummary& summary) {
    std::vector<std::string> failures;
    for (const DependencyEcosystemResult& result : summary.ecosystems) {
        if (result.status != DependencyHealth::error) continue;
        failures.push_back(fmt::format("{} ({}): {}", printable(path),
                                       printable(shownProject(result)),
                                       result.message.value_or("the check failed")));
    }
    return failures;
}

JsonObject dependencyJson(const std::string& path, const DependencySummary& summary) {
    return {{"path", path},
            {"status", rawValue(summary.status())},
            {"inlineSummary", encodedJson(summary.inlineSummary(), outputStyle)},
            {"summary", encodedJson(summary, outputStyle)}};
}

std::string shownProject(const DependencyEcosystemResult& result) {
    return result.project && !result.project->empty() ? *result.project : ".";
}

std::string_view inWords(DependencyHealth status) {
    switch (status) {
        case DependencyHealth::checking:
            return "not checked yet";
        case DependencyHealth::upToDate:
            return "up to date";
        case DependencyHealth::syncNeeded:
            return "sync needed";
        case DependencyHealth::constraints:
            return "held back";
        case DependencyHealth::updatesAvailable:
            return "updates available";
        case DependencyHealth::notApplicable:
            return "not applicable";
        case DependencyHealth::unknown:
            return "unknown";
        case DependencyHealth::error:
            return "check failed";
    }
    return {};
}

std::string_view inWords(DependencyUpdateType type) {
    switch (type) {
        case DependencyUpdateType::major:
            return "major";
        case DependencyUpdateType::minor:
            return "minor";
        case DependencyUpdateType::patch:
            return "patch";
        case DependencyUpdateType::constrained:
            return "limited";
        case DependencyUpdateType::blocked:
            return "blocked";
        case DependencyUpdateType::unknown:
            return "other";
    }
    return {};
}

std::string_view inWords(DependencyUpdateOrigin origin) {
    switch (origin) {
        case DependencyUpdateOrigin::unknown:
            return {};
        case DependencyUpdateOrigin::manifestDirect:
            return "direct";
        case DependencyUpdateOrigin::manifestTransitive:
            return "transitive";
        case DependencyUpdateOrigin::venvOnly:
            return "venv only";
    }
    return {};
}

}  // namespace tarnbeck::cli
