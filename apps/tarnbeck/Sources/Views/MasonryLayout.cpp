#include "MasonryLayout.h"

#include <algorithm>

namespace tarnbeck {

int MasonryLayout::columnCount(double forWidth) const {
    if (maxColumns < 2) return 1;
    const double fitting = (forWidth + spacing) / (minimumColumnWidth + spacing);
    // The limits come first: a number that is too large, or none, must not become an integer.
    if (fitting >= maxColumns) return maxColumns;
    return fitting >= 1 ? static_cast<int>(fitting) : 1;
}

MasonryLayout::Measured MasonryLayout::measuredLayout(double width, std::size_t itemCount,
                                                      const HeightOf& heightOf) const {
    const int columns = columnCount(width);
    Measured measured{.columnWidth = std::max((width - (columns - 1) * spacing) / columns, 1.0)};
    std::vector<double> columnHeights(static_cast<std::size_t>(columns), 0.0);
    measured.placements.reserve(itemCount);
    for (std::size_t index = 0; index < itemCount; ++index) {
        const auto best = std::ranges::min_element(columnHeights);
        const auto column = static_cast<double>(best - columnHeights.begin());
        const double height = heightOf(index, measured.columnWidth);
        measured.placements.push_back(
            {.x = column * (measured.columnWidth + spacing), .y = *best, .height = height});
        *best += height + spacing;
    }
    measured.totalHeight = std::max(std::ranges::max(columnHeights) - spacing, 0.0);
    return measured;
}

MasonryLayout::Size MasonryLayout::size(std::optional<double> proposedWidth, std::size_t itemCount,
                                        const HeightOf& heightOf) const {
    const double width = proposedWidth.value_or(minimumColumnWidth);
    return {.width = width, .height = measuredLayout(width, itemCount, heightOf).totalHeight};
}

ColumnRowLayout ColumnRowLayout::of(double width, std::size_t columnCount) {
    if (columnCount == 0) return {.contentWidth = width};
    const auto count = static_cast<double>(columnCount);
    return {.columnWidth = std::max(width / count, minimumColumnWidth),
            .contentWidth = std::max(width, count * minimumColumnWidth)};
}

}  // namespace tarnbeck
