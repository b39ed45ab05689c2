// Which pieces of text are marked because they contain what is searched for. Pure, any thread.
#pragma once

#include <string>
#include <string_view>

#include "Text.h"

namespace tarnbeck {

// The whole piece is marked, not the characters that match.
inline bool isHighlighted(std::string_view text, std::string_view query) {
    return !query.empty() && lowercased(text).find(lowercased(query)) != std::string::npos;
}

}  // namespace tarnbeck
