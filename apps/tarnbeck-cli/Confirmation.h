// Asking the user before something is done that can't be undone.
#pragma once

#include <string_view>

namespace tarnbeck::cli {

enum class Confirmation { yes, no, nobodyToAsk };

// Asks on standard error and takes the answer from standard input, where that is a terminal. What
// was typed before the question does not count. Blocks until a line has come.
Confirmation confirmation(std::string_view question);

}  // namespace tarnbeck::cli
