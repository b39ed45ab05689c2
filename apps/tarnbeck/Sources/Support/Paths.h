// Paths as texts. Nothing here looks at the disk, except for the home of a named user; symbolic
// links are never resolved. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace tarnbeck {

// The user's home: `HOME`, or else what the system's user database says, without trailing slashes.
// Taken once at start and passed down.
std::string userHome();

// "~" and "~/x" lead below `home`, "~user" below that user's home (unchanged for an unknown user).
// Trailing slashes are dropped from every result.
std::string expandingTilde(std::string_view path, std::string_view home);

// Absolute, without ".", ".." and doubled or trailing slashes. A relative path begins at `base`,
// or at the current directory where that is empty.
std::string standardized(std::string_view path, std::string_view base = {});

// "b" of "/a/b" and of "/a/b/"; "/" of "/"; empty of the empty text.
std::string_view lastPathComponent(std::string_view path);

// "/a" of "/a/b"; "/" of "/a" and of "/".
std::string_view parentPath(std::string_view path);

}  // namespace tarnbeck
