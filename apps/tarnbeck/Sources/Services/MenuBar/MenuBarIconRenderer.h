// Draws the status item of a menu bar: a branch and, beside it, one or two lines of tiny counts.
// Pure; any thread that may measure text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MenuBarIconRenderState.h"
#include "VectorImage.h"

namespace tarnbeck::MenuBarIconRenderer {

struct CountLine {
    std::string valueText;
    std::string marker;  // one letter
    bool operator==(const CountLine&) const = default;
};

struct MenuBar {
    double thickness = 22;
    const TextMeasurement& measure;
};

// As high as the bar, at least 18; a template unless a dot must stay green.
VectorImage render(const MenuBarIconRenderState& state, const MenuBar& menuBar);

// From top to bottom.
std::vector<CountLine> buildCountLines(std::int64_t gitBadgeCount,
                                       std::optional<std::int64_t> runnerBusyCount);
// Whole points, for the widest of them.
double countColumnWidth(const std::vector<CountLine>& lines, const TextMeasurement& measure);

// The branch in a square, its lower dot apart in colour.
struct BranchColors {
    VectorImage::Color ink;
    VectorImage::Color lowerDot;
};
std::vector<VectorImage::Command> drawBranch(const VectorImage::Rect& in,
                                             const BranchColors& colors);

}  // namespace tarnbeck::MenuBarIconRenderer
