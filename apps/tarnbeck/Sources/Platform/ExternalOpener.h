#pragma once

#include <string_view>

namespace tarnbeck {

// Opens things with the program that the user has for them. Returns at once; what can't be opened
// is told by the system or not at all. Main thread.
class ExternalOpener {
  public:
    ExternalOpener() = default;
    ExternalOpener(const ExternalOpener&) = delete;
    ExternalOpener& operator=(const ExternalOpener&) = delete;
    virtual ~ExternalOpener() = default;

    // An absolute path, any bytes.
    virtual void openFile(std::string_view path) = 0;
    // Only addresses of the web ("http", "https") are opened.
    virtual void openUrl(std::string_view url) = 0;
};

}  // namespace tarnbeck
