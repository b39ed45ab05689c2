// Reading the scan log, which other programs go on writing and renaming.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "FileDescriptor.h"
#include "Result.h"

namespace tarnbeck::cli {

// One thread at a time.
class LogReader {
  public:
    // `path` is where the log is; it may not be there yet.
    explicit LogReader(std::string path) : path_(std::move(path)) {}

    // What there is, the earlier generation first; empty when there is no log. The system's words
    // when the log can't be read.
    Result<std::string> readAll();

    // What has come behind that, in whole lines. A log that was renamed is read to its end, and the
    // one that took its place from its beginning; so is one that was cut off.
    std::string readNew();

  private:
    std::string linesOf(std::string bytes);

    std::string path_;
    FileDescriptor file_;
    std::string halfLine_;  // read, but not told yet
};

// The end of the text that holds so many lines. What stands behind the last line feed is one too.
std::string_view lastLines(std::string_view text, std::size_t count);

// The text with nothing in it that moves a terminal but line feeds and tabs.
std::string printableLines(std::string_view text);

}  // namespace tarnbeck::cli
