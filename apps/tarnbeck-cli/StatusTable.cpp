#include "StatusTable.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include <fmt/format.h>

#include "ColumnLine.h"
#include "Paths.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

constexpr std::size_t gap = ColumnLine::gap;

struct Cells {
    std::string name;
    std::string branch;
    std::string badge;
    std::string summary;
};

// The columns that each cell may take.
struct Widths {
    std::size_t name = 0;
    std::size_t branch = 0;
    std::size_t badge = 0;
    std::size_t summary = 0;

    std::size_t beforeSummary() const {
        return 1 + 1 + name + gap + branch + (badge > 0 ? gap + badge : 0);
    }
};
constexpr Widths widest{.name = 32, .branch = 40, .badge = 40, .summary = 400};

int urgency(StatusColor color) {
    switch (color) {
        case StatusColor::red:
            return 0;
        case StatusColor::orange:
            return 1;
        case StatusColor::yellow:
            return 2;
        case StatusColor::green:
        case StatusColor::blue:
        case StatusColor::gray:
        case StatusColor::secondary:
            break;
    }
    return 3;
}

std::string_view escapeSequence(StatusColor color) {
    switch (color) {
        case StatusColor::red:
            return "\033[31m";
        case StatusColor::orange:
            return "\033[38;5;208m";
        case StatusColor::yellow:
            return "\033[33m";
        case StatusColor::green:
            return "\033[32m";
        case StatusColor::blue:
            return "\033[34m";
        case StatusColor::gray:
        case StatusColor::secondary:
            break;
    }
    return "\033[90m";
}

Cells cellsOf(const GitRepository& repository) {
    return {.name = printable(repository.name),
            .branch = printable(repository.currentBranch.value_or("")),
            .badge = repository.syncStatus.badgeValue(),
            .summary = joined(repository.summaryParts(), " · ")};
}

Widths naturalWidths(const std::vector<Cells>& rows) {
    Widths widths;
    const auto widen = [](std::size_t& width, std::size_t most, const std::string& text) {
        width = std::min(std::max(width, displayWidth(text)), most);
    };
    for (const Cells& cells : rows) {
        widen(widths.name, widest.name, cells.name);
        widen(widths.branch, widest.branch, cells.branch);
        widen(widths.badge, widest.badge, cells.badge);
        widen(widths.summary, widest.summary, cells.summary);
    }
    return widths;
}

// Takes columns from the wider of name and branch, down to `least`, until the summary has `room`.
void narrow(Widths& widths, std::size_t columns, std::size_t room, std::size_t least) {
    const std::size_t wanted = std::min(widths.summary, room) + (widths.summary > 0 ? gap : 0);
    while (widths.beforeSummary() + wanted > columns) {
        std::size_t& wider = widths.name >= widths.branch ? widths.name : widths.branch;
        if (wider <= least) return;
        --wider;
    }
}

Widths fittingWidths(Widths widths, std::size_t columns) {
    constexpr std::size_t goodRoom = 28;
    constexpr std::size_t tightRoom = 16;
    narrow(widths, columns, goodRoom, 20);
    if (widths.beforeSummary() + gap + std::min(widths.summary, tightRoom) > columns) {
        widths.badge = 0;
        narrow(widths, columns, tightRoom, 8);
    }
    const std::size_t taken = widths.beforeSummary() + gap;
    widths.summary = std::min(widths.summary, columns > taken ? columns - taken : 0);
    return widths;
}

std::string icon(const GitRepository& repository, const TableStyle& style) {
    return painted(iconCharacter(repository), repository.statusColor(), style);
}

std::string row(const GitRepository& repository, const Cells& cells, const Widths& widths,
                const TableStyle& style) {
    const auto plain = [](const std::string& text) { return text; };
    const auto dimmed = [&](const std::string& text) {
        return style.color ? fmt::format("\033[2m{}\033[0m", text) : text;
    };
    const auto inStatusColor = [&](const std::string& text) {
        return painted(text, repository.statusColor(), style);
    };
    ColumnLine line(icon(repository, style));
    line.add(cells.name, widths.name, plain);
    line.add(cells.branch, widths.branch, plain);
    line.add(cells.badge, widths.badge, dimmed);
    line.add(cells.summary, widths.summary, inStatusColor);
    return line.take();
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

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

std::string painted(std::string_view text, StatusColor color, const TableStyle& style) {
    return style.color ? colored(text, color) : std::string(text);
}

std::vector<std::string> distinctNames(const std::vector<std::string>& paths) {
    std::unordered_map<std::string_view, int> count;
    for (const std::string& path : paths) ++count[lastPathComponent(path)];
    std::vector<std::string> names;
    for (const std::string& path : paths) {
        const std::string_view name = lastPathComponent(path);
        std::string folder;
        if (count[name] > 1) folder = printable(lastPathComponent(parentPath(path))) + "/";
        names.push_back(folder + printable(name));
    }
    return names;
}

std::string statusTable(std::vector<RepositorySnapshot> repositories, const TableStyle& style) {
    std::ranges::stable_sort(repositories, {}, [](const RepositorySnapshot& repository) {
        return urgency(repository->statusColor());
    });
    std::vector<Cells> rows;
    rows.reserve(repositories.size());
    std::vector<std::string> paths;
    for (const auto& repository : repositories) {
        rows.push_back(cellsOf(*repository));
        paths.push_back(repository->path);
    }
    std::vector<std::string> names = distinctNames(paths);
    for (std::size_t index = 0; index < rows.size(); ++index) rows[index].name = names[index];
    Widths widths = naturalWidths(rows);
    if (style.columns) widths = fittingWidths(widths, *style.columns);
    std::string table;
    for (std::size_t index = 0; index < rows.size(); ++index) {
        table += row(*repositories[index], rows[index], widths, style) + "\n";
    }
    return table;
}

std::string statusLine(const GitRepository& repository, const TableStyle& style) {
    const Cells cells = cellsOf(repository);
    return row(repository, cells, naturalWidths({cells}), style);
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

std::string nothingFoundText(const std::vector<std::string>& scanDirectories) {
    const std::string where =
        scanDirectories.empty() ? "" : " below " + printable(joined(scanDirectories, ", "));
    return fmt::format(
        "No repositories found{}.\n"
        "`tarnbeck-cli FOLDER` shows those below another folder, `tarnbeck-cli add PATH` keeps\n"
        "one for good.\n",
        where);
}

}  // namespace tarnbeck::cli
