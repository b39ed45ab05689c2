// A home of its own with a configuration in it, and the messages that come of it.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "AppConfiguration.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

class ConfigurationFixture : public ::testing::Test {
  protected:
    static constexpr const char* fileName = ".config/tarnbeck/config.json";

    std::string write(std::string_view content) const { return home_.write(fileName, content); }
    AppConfiguration load() const { return AppConfiguration::load(place_); }
    bool isFile(std::string_view name) const { return std::filesystem::exists(home_ / name); }

    // The names in a folder of the home, sorted.
    std::vector<std::string> namesIn(std::string_view folder) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(home_ / folder)) {
            names.push_back(entry.path().filename());
        }
        std::ranges::sort(names);
        return names;
    }

    TemporaryFolder home_;
    std::vector<std::string> messages_;
    ConfigurationPlace place_{.home = home_.path(), .report = [this](std::string_view message) {
                                  messages_.emplace_back(message);
                              }};
};

}  // namespace tarnbeck::testing
