// The colour names that are all that logic knows of looks.
#pragma once

#include <array>
#include <string_view>
#include <utility>

#include "TextEnumeration.h"

namespace tarnbeck {

enum class StatusColor { red, orange, yellow, green, blue, gray, secondary };

constexpr auto rawValues(StatusColor /*tag*/) {
    return std::to_array<std::pair<StatusColor, std::string_view>>({
        {StatusColor::red, "red"},
        {StatusColor::orange, "orange"},
        {StatusColor::yellow, "yellow"},
        {StatusColor::green, "green"},
        {StatusColor::blue, "blue"},
        {StatusColor::gray, "gray"},
        {StatusColor::secondary, "secondary"},
    });
}

}  // namespace tarnbeck
