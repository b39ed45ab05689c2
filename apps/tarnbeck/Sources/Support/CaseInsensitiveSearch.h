// Looking for a text without regard to upper and lower case, in all scripts. What is looked for is
// prepared once, since it is looked for in very many texts.
#pragma once

#include <string>
#include <string_view>

namespace tarnbeck {

// Accents count, and a letter with one is the same however it is written (composed or not). Bytes
// that are not UTF-8 are taken for replacement characters. Any thread.
class CaseInsensitiveSearch {
  public:
    explicit CaseInsensitiveSearch(std::string_view query);

    // Nothing is found by an empty query.
    bool isIn(std::string_view text) const;
    // The same, in a text that is prepared too, because it is searched again and again.
    bool isInFolded(std::string_view text) const;
    static void appendFolded(std::string_view text, std::string& to);
    // The text is that of the query, from end to end.
    bool isAllOf(std::string_view text) const;

  private:
    std::string query_;  // folded
    bool isAscii_;
};

}  // namespace tarnbeck
