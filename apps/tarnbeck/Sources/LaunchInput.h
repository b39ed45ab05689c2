// What a process was started with, taken once at its entry.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tarnbeck {

struct LaunchInput {
    std::vector<std::string> arguments;              // without the program's name
    std::map<std::string, std::string> environment;  // as far as the application looks at it

    // Anywhere in the list, and the whole text.
    bool contains(std::string_view argument) const {
        return std::ranges::find(arguments, argument) != arguments.end();
    }
};

}  // namespace tarnbeck
