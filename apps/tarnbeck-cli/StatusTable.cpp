#include "StatusTable.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "Text.h"

namespace tarnbeck::cli {
namespace {

constexpr std::size_t widestName = 32;
constexpr std::size_t widestBranch = 40;
constexpr std::string_view gap = "  ";

using Cells = std::array<std::string, 3>;  // name, branch, sync badge

int urgency(StatusColor color) {
    switch (color) {
        case StatusColor::red: return 0;
        case StatusColor::orange: return 1;
        case StatusColor::yellow: return 2;
        case StatusColor::green:
        case StatusColor::blue:
        case StatusColor::gray:
        case StatusColor::secondary: break;
    }
    return 3;
}

std::string_view escapeSequence(StatusColor color) {
    switch (color) {
        case StatusColor::red: return "\033[31m";
        case StatusColor::orange: return "\033[38;5;208m";
        case StatusColor::yellow: return "\033[33m";
        case StatusColor::green: return "\033[32m";
        case StatusColor::blue: return "\033[34m";
        case StatusColor::gray:
        case StatusColor::secondary: break;
    }
    return "\033[90m";
}

std::string dimmed(std::string_view text) { return fmt::format("\033[2m{}\033[0m", text); }

Cells cellsOf(const GitRepository& repository) {
    return {elidedAtEnd(printable(repository.name), widestName),
            elidedAtEnd(printable(repository.currentBranch.value_or("")), widestBranch),
            repository.syncStatus.badgeValue()};
}

std::string padded(const std::string& text, std::size_t width) {
    return text + std::string(width - std::min(width, displayWidth(text)), ' ');
}

std::string icon(const GitRepository& repository, const TableStyle& style) {
    const std::string_view character = iconCharacter(repository);
    return style.color ? colored(character, repository.statusColor()) : std::string(character);
}

std::string summaryOf(const GitRepository& repository, const TableStyle& style) {
    const std::string summary = joined(repository.summaryParts(), " · ");
    return style.color ? colored(summary, repository.statusColor()) : summary;
}

std::string row(const GitRepository& repository, const Cells& cells,
                const std::array<std::size_t, 3>& widths, const TableStyle& style) {
    std::string summary = joined(repository.summaryParts(), " · ");
    if (style.columns) {
        const std::size_t taken = 1 + 4 * gap.size() - 1 + widths[0] + widths[1] + widths[2];
        const std::size_t left = *style.columns > taken ? *style.columns - taken : 0;
        if (left > 8) summary = elidedAtEnd(summary, left);
    }
    std::string badge = padded(cells[2], widths[2]);
    if (style.color) {
        badge = dimmed(badge);
        if (!summary.empty()) summary = colored(summary, repository.statusColor());
    }
    std::string line = fmt::format("{} {}{}{}{}{}{}{}", icon(repository, style),
                                   padded(cells[0], widths[0]), gap, padded(cells[1], widths[1]),
                                   gap, badge, gap, summary);
    while (line.ends_with(' ')) line.pop_back();
    return line + "\n";
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

}  // namespace

std::string_view iconCharacter(const GitRepository& repository) {
    const std::string_view symbol = repository.statusIcon();
    if (symbol == "exclamationmark.octagon.fill") return "⬢";
    if (symbol == "pencil.circle.fill") return "✎";
    if (symbol == "arrow.up.circle.fill") return "↑";
    if (symbol == "arrow.down.circle.fill") return "↓";
    if (symbol == "arrow.left.arrow.right.circle.fill") return "↔";
    if (symbol == "checkmark.circle.fill") return "✓";
    return "▲";
}

std::string colored(std::string_view text, StatusColor color) {
    return fmt::format("{}{}\033[0m", escapeSequence(color), text);
}

std::string statusTable(std::vector<RepositorySnapshot> repositories, const TableStyle& style) {
    std::ranges::stable_sort(repositories, {}, [](const RepositorySnapshot& repository) {
        return urgency(repository->statusColor());
    });
    std::vector<Cells> rows;
    std::array<std::size_t, 3> widths{};
    for (const auto& repository : repositories) {
        const Cells& cells = rows.emplace_back(cellsOf(*repository));
        for (std::size_t column = 0; column < cells.size(); ++column) {
            widths[column] = std::max(widths[column], displayWidth(cells[column]));
        }
    }
    std::string table;
    for (std::size_t index = 0; index < rows.size(); ++index) {
        table += row(*repositories[index], rows[index], widths, style);
    }
    return table;
}

std::string statusLine(const GitRepository& repository, const TableStyle& style) {
    const Cells cells = cellsOf(repository);
    std::string line = fmt::format("{} {}", icon(repository, style), cells[0]);
    for (const std::string& cell : {cells[1], cells[2], summaryOf(repository, style)}) {
        if (!cell.empty()) line += std::string(gap) + cell;
    }
    return line;
}

std::string statusCounts(const std::vector<RepositorySnapshot>& repositories, std::size_t failed) {
    const auto clean = static_cast<std::size_t>(std::ranges::count_if(
        repositories, [](const auto& repository) { return repository->isClean(); }));
    std::string line = counted(repositories.size(), "repository", "repositories");
    const std::size_t dirty = repositories.size() - clean;
    if (dirty > 0) line += " · " + counted(dirty, "needs work", "need work");
    if (clean > 0) line += fmt::format(" · {} clean", clean);
    if (failed > 0) line += fmt::format(" · {} could not be scanned", failed);
    return line;
}

}  // namespace tarnbeck::cli
