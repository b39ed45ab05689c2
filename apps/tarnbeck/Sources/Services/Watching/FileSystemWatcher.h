// What the rules of watching, of discovery and of project discovery share.
#pragma once

#include <functional>
#include <set>
#include <string>

namespace tarnbeck {

class FileSystemWatcher {
  public:
    // Names of folders and files below which nothing matters.
    static const std::set<std::string, std::less<>>& defaultExcludes();
};

}  // namespace tarnbeck
