// Regular expressions in ICU's syntax, over UTF-8. Any number of threads at once.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnbeck {

class RegularExpression {
  public:
    enum class Anchors { text, lines };  // what "^" and "$" stand for
    using Captures =
        std::vector<std::string>;  // those in parentheses; empty where one took no part

    // An expression that can't be built matches nothing.
    RegularExpression(std::string_view expression, Anchors anchors);
    ~RegularExpression();
    RegularExpression(const RegularExpression&) = delete;
    RegularExpression& operator=(const RegularExpression&) = delete;

    // All matches, in order. Those found so far where the text is so odd that the search would take
    // longer than a second or so.
    std::vector<Captures> allMatches(std::string_view text) const;
    // The one that begins at the beginning of the text.
    std::optional<Captures> matchAtBeginning(std::string_view text) const;

  private:
    struct Pattern;
    const std::unique_ptr<const Pattern> pattern_;
};

}  // namespace tarnbeck
