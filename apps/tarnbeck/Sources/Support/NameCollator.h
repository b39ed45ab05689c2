// The order in which a person expects names: that of their language, upper and lower case alike.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tarnbeck {

// Compares at secondary strength, without numeric ordering. Comparing is safe from any thread.
class NameCollator {
  public:
    // `locale` is an identifier such as "de_DE"; empty for the user's own.
    explicit NameCollator(const std::string& locale = {});
    ~NameCollator();

    // Below, at or above zero. Names that differ in case only are equal.
    int compare(std::string_view left, std::string_view right) const;

    // For names that are compared again and again: two keys compare, as unsigned bytes, like the
    // names that they were made of.
    std::string sortKey(std::string_view name) const;

  private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace tarnbeck
