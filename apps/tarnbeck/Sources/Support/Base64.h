// Bytes as text that JSON can hold (RFC 4648, with padding). Pure; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnbeck {

std::string base64(std::string_view bytes);

// Absent for anything that `base64` does not write: blanks, missing padding, stray bits at the end.
std::optional<std::string> decodedBase64(std::string_view text);

}  // namespace tarnbeck
