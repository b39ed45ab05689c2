// Where numbers are remembered.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace settings_window {

struct WindowDefaults {
    // Absent where nothing is stored, or something that is no number.
    std::function<std::optional<double>(const std::string& key)> number;
    std::function<void(const std::string& key, double value)> setNumber;
};

}  // namespace settings_window
