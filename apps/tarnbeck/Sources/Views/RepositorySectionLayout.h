// The measures that all rows of a section share, so that their columns line up. Device-independent
// pixels.
#pragma once

#include <vector>

#include "Row.h"

namespace tarnbeck {

struct RepositorySectionLayout {
    double rowLeadingInset = 12;
    double rowChevronSlotWidth = 16;
    double rowPrimaryIconSlotWidth = 20;
    double rowTrailingInset = 12;
    double actionColumnWidth = 24;
    double actionControlHeight = 20;
    double metadataColumnWidth = 160;

    static constexpr double headerHeight = 40;
    static constexpr double bottomInset = 8;  // below the last row of a section

    // A subsection stands a little apart from what is above it.
    static constexpr double heightOf(Row::Kind kind) {
        return kind == Row::Kind::subsection ? 32 : 24;
    }
    static constexpr double sectionHeight(const std::vector<Row::Kind>& rows) {
        double height = headerHeight;
        for (const Row::Kind kind : rows) height += heightOf(kind);
        return rows.empty() ? height : height + bottomInset;
    }
};

}  // namespace tarnbeck
