// Questions to the file system. All block; any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include <sys/types.h>

#include "Result.h"

namespace tarnbeck {

// Both follow symbolic links: a dangling one is missing.
bool exists(const std::string& path);
bool isDirectory(const std::string& path);
// A regular file after following links, with execute permission.
bool isExecutableFile(const std::string& path);

// The system's words for an error number.
std::string systemErrorText(int errorNumber);

// Creates the folder and its parents. The last one gets `mode`, the parents the usual one. Absent
// on success, also when it was there already; otherwise the system's words.
std::optional<std::string> createDirectories(const std::string& path, mode_t mode);

// The whole file, or the system's words why not. Only of a regular file, after following links: no
// pipe and no device can hold the caller up. A file of more than `largest` bytes is refused.
Result<std::string> readFile(const std::string& path, std::size_t largest = std::size_t{512} << 20);

}  // namespace tarnbeck
