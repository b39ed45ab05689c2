// Numbers that a test can look at.
#pragma once

#include <map>
#include <string>

#include "WindowDefaults.h"

namespace settings_window::testing {

class RememberedNumbers {
  public:
    WindowDefaults defaults() {
        return {
            .number = [this](const std::string& key) -> std::optional<double> {
                const auto found = numbers.find(key);
                if (found == numbers.end()) return std::nullopt;
                return found->second;
            },
            .setNumber = [this](const std::string& key, double value) { numbers[key] = value; }};
    }

    std::map<std::string, double> numbers;
};

}  // namespace settings_window::testing
