// The program's two streams. Written without buffering, so that what was written is seen.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "CommandLine.h"

namespace tarnbeck::cli {

// Fills standard streams that the program was started without, so that no file of its own takes
// their place. Writing to such a stream fails. To be called before anything is opened.
void fillMissingStandardStreams();

// Writes all to standard output. When the reader has gone, the program ends as a writer to a
// closed pipe does; on another error it ends with a word on standard error. False only when a
// signal came in between.
bool print(std::string_view text);

// Ends the program as the writer to a pipe that nobody reads any more.
[[noreturn]] void endForLostReader();

// One line to standard error, with the program's name before it. Control characters are made
// visible.
void complain(std::string_view message);

// The same for a message of several lines: each is a line of its own, and those behind the first
// are indented. Empty ones are left out.
void complainLineByLine(std::string_view message);

// Bytes to standard error as they are, all of them unless it is gone. Any thread.
void passToStandardError(std::string_view bytes);

// A question to standard error, without a line feed.
void showPrompt(std::string_view question);

bool standardOutputIsTerminal();

// The columns of the terminal behind standard output; absent when it is none.
std::optional<std::size_t> terminalColumns();

// Whether to colour, by the user's word, by NO_COLOR and by whether output is a terminal.
bool usesColor(ColorChoice choice);

// A line on standard error that shows how far things are, when that is a terminal. It is gone when
// this goes, or is cleared.
class ProgressLine {
  public:
    ProgressLine();
    ~ProgressLine() { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(std::string_view text);
    void clear();

  private:
    bool enabled_;
    bool shown_ = false;
};

}  // namespace tarnbeck::cli
