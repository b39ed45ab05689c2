// A font in which every letter is 0.6 of its size wide, and every line 1.2 of the largest high.
#pragma once

#include <algorithm>

#include "VectorImage.h"

namespace tarnbeck::testing {

inline const TextMeasurement measuredText = [](const std::vector<VectorImage::TextRun>& runs,
                                               double) {
    TextSize size;
    for (const auto& run : runs) {
        size.width += 0.6 * run.size * static_cast<double>(run.text.size());
        size.height = std::max(size.height, 1.2 * run.size);
    }
    return size;
};

// The commands of one kind, in the order in which they are drawn.
template <class Command>
std::vector<Command> commandsOf(const VectorImage& image) {
    std::vector<Command> found;
    for (const auto& command : image.commands) {
        if (const auto* one = std::get_if<Command>(&command)) found.push_back(*one);
    }
    return found;
}

// What stands on a line, runs joined.
inline std::string textOf(const VectorImage::Text& text) {
    std::string joined;
    for (const auto& run : text.runs) joined += run.text;
    return joined;
}

}  // namespace tarnbeck::testing
