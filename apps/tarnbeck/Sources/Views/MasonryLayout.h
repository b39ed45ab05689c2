// Where the sections of the list and of the column row stand: plain arithmetic over widths and
// heights, in device-independent pixels. Pure, any thread.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace tarnbeck {

// Columns of equal width; each item goes below the shortest column.
struct MasonryLayout {
    int maxColumns = 1;
    double minimumColumnWidth = 0;
    double spacing = 0;

    struct Placement {
        double x = 0;
        double y = 0;
        double height = 0;
        bool operator==(const Placement&) const = default;
    };
    struct Measured {
        double columnWidth = 0;
        double totalHeight = 0;
        std::vector<Placement> placements;  // one an item, in their order
        bool operator==(const Measured&) const = default;
    };
    struct Size {
        double width = 0;
        double height = 0;
        bool operator==(const Size&) const = default;
    };
    // The height of the item at an index, when it is as wide as a column.
    using HeightOf = std::function<double(std::size_t index, double columnWidth)>;

    int columnCount(double forWidth) const;
    Measured measuredLayout(double width, std::size_t itemCount, const HeightOf& heightOf) const;
    // Without a proposed width that of one column.
    Size size(std::optional<double> proposedWidth, std::size_t itemCount,
              const HeightOf& heightOf) const;
};

// That of the repositories in the list.
inline constexpr MasonryLayout repoListLayout{
    .maxColumns = 2, .minimumColumnWidth = 760, .spacing = 8};

// A column for each repository, side by side; they share the width while all of them find room.
struct ColumnRowLayout {
    static constexpr double minimumColumnWidth = 480;

    double columnWidth = minimumColumnWidth;
    double contentWidth = 0;
    bool operator==(const ColumnRowLayout&) const = default;

    static ColumnRowLayout of(double width, std::size_t columnCount);
};

}  // namespace tarnbeck
