// One line of a table for people.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "Text.h"

namespace tarnbeck::cli {

// Cells that begin at their columns, without blanks at the line's end.
class ColumnLine {
  public:
    static constexpr std::size_t gap = 2;  // between two cells

    // `beginning` stands before the first cell, and between them that many blanks.
    explicit ColumnLine(std::string_view beginning, std::size_t blanks = 1)
        : text_(beginning), blanks_(blanks) {}

    // A cell that is wider than its column is cut. `paint` gives the text its colour.
    template <class Paint>
    void add(const std::string& cell, std::size_t width, Paint paint) {
        if (width == 0) return;
        const std::string fitting = elidedAtEnd(cell, width);
        if (!fitting.empty()) {
            text_ += std::string(blanks_, ' ') + paint(fitting);
            blanks_ = 0;
        }
        blanks_ += width - std::min(width, displayWidth(fitting)) + gap;
    }

    std::string take() { return std::move(text_); }

  private:
    std::string text_;
    std::size_t blanks_;
};

}  // namespace tarnbeck::cli
