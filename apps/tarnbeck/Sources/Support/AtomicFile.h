// Replacing a file so that, whatever happens (a full disk and `kill -9` included), either the old
// or the new content is there, whole.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace tarnbeck {

// Writes a file of a unique name beside `path`, flushes it, renames it over `path` and flushes the
// folder. A symbolic link stays, and what it leads to is replaced; an existing file keeps its mode,
// a new one gets `mode` (less the umask). Absent on success; otherwise the system's words, with the
// old file untouched and nothing left behind. Blocks on the disk; any thread.
std::optional<std::string> writeFileAtomically(const std::string& path, std::string_view bytes,
                                               mode_t mode);

// The same with content that lies in pieces.
std::optional<std::string> writeFileAtomically(const std::string& path,
                                               std::span<const std::string_view> pieces,
                                               mode_t mode);

}  // namespace tarnbeck
