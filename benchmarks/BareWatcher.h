// The least that watching folders can cost on Linux: a plain loop that walks and sets the watches,
// and a plain reader of what is told.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <sys/inotify.h>

#include "FileDescriptor.h"

namespace tarnbeck::benchmark {

inline constexpr unsigned bareMask = IN_CREATE | IN_DELETE | IN_MODIFY | IN_ATTRIB | IN_MOVED_FROM |
                                     IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR |
                                     IN_EXCL_UNLINK | IN_DONT_FOLLOW;

// Watches `root` and all folders below it that are not excluded, nor object stores of ".git"; the
// number of watches. The folder is its parent's entry `name`.
std::size_t watchBarely(const FileDescriptor& inotify, const std::string& root,
                        const std::set<std::string, std::less<>>& excludes);

// Reads until a file called `last` was made; the number of events.
std::size_t readBarely(const FileDescriptor& inotify, std::string_view last);

}  // namespace tarnbeck::benchmark
