// The few habits of a system's file tree that a walk has to know. Any thread.
#pragma once

#include <string>

namespace tarnbeck {

// macOS shows the same folders with and without a leading "/private"; the short form is the one
// that counts, where it exists. Elsewhere the path as it stands.
std::string withoutSystemPrefix(std::string path);

// A folder that the system shows as one thing (an application bundle, say). Linux has none.
bool isPackage(const std::string& directory);

}  // namespace tarnbeck
