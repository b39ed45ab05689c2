// Draws the status item of a panel whose slots are square and whose colour nobody knows: a dark
// tile with the branch and one large count. What does not fit into it stands in the tool tip. Pure;
// any thread that may measure text.
#pragma once

#include <string>

#include "MenuBarIconRenderState.h"
#include "VectorImage.h"

namespace tarnbeck::StatusTileRenderer {

inline constexpr double side = 22;

// A square of `side`, to be scaled as a whole.
VectorImage render(const MenuBarIconRenderState& state, const TextMeasurement& measure);

// Empty for nothing to count; above 99 a plus sign: three digits could not be read.
std::string badgeText(const MenuBarIconRenderState& state);

// All that the state tells, in words.
std::string toolTip(const MenuBarIconRenderState& state);

}  // namespace tarnbeck::StatusTileRenderer
