// The few habits of a system's file tree that a walk has to know. Any thread.
#pragma once

#include <ctime>
#include <string>
#include <string_view>

#include <sys/stat.h>

namespace tarnbeck {

// macOS shows the same folders with and without a leading "/private"; the short form is the one
// that counts, where it exists. Elsewhere the path as it stands.
std::string withoutSystemPrefix(std::string path);

// A folder that the system shows as one thing (an application bundle, say). Linux has none.
bool isPackage(const std::string& directory);

// What a person is not shown: a name with a leading dot, and on macOS what carries the hidden flag.
bool isHidden(const std::string& directory, std::string_view name);

// When the content changed last.
timespec modificationTime(const struct stat& information);

}  // namespace tarnbeck
