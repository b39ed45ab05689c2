#pragma once

#include <string_view>

namespace tarnbeck {

// What the user can paste elsewhere. Main thread.
class Clipboard {
  public:
    Clipboard() = default;
    Clipboard(const Clipboard&) = delete;
    Clipboard& operator=(const Clipboard&) = delete;
    virtual ~Clipboard() = default;

    // Bytes that are not UTF-8 are pasted as replacement characters.
    virtual void setString(std::string_view text) = 0;
};

}  // namespace tarnbeck
