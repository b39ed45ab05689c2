// The real program, run as a user or a script would run it.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "FileDescriptor.h"

namespace tarnbeck::testing {

struct ProgramCall {
    std::vector<std::string> arguments;
    std::optional<std::string> home;  // absent: HOME is not set
    std::string folder = "/";         // where it is run
    // "NAME=value", besides HOME, PATH and LC_ALL or in their place.
    std::vector<std::string> environment = {};
    // `closed`: standard input is closed too.
    enum class Output { pipe, terminal, fullDisk, closed } output = Output::pipe;
    enum class Errors { pipe, terminal } errors = Errors::pipe;
    // `terminal`: the one that output or errors are on.
    enum class Input { nothing, terminal } input = Input::nothing;
    unsigned short columns = 100;    // of the terminal
    bool withoutPrivileges = false;  // file permissions hold even for root
};

struct ProgramResult {
    std::optional<int> status;  // absent: ended by a signal
    int signal = 0;
    std::string output;  // as written; a terminal's line feeds come as "\r\n"
    std::string errors;
};

// Runs it to its end; a failed expectation after 60 seconds.
ProgramResult run(const ProgramCall& call);

// One that runs beside the test. Ended with the object, if not before.
class RunningProgram {
  public:
    explicit RunningProgram(const ProgramCall& call);
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    // The next line of standard output, without its line feed; empty at the end.
    std::string readLine();
    // Reads standard output until `text` has come; false at the end.
    bool readUntil(std::string_view text);
    void signal(int number) const;
    // Types the character on the terminal.
    void type(char character) const;
    void closeOutput() { output_.close(); }
    // Waits for the end, and takes what was not read yet.
    ProgramResult wait();

  private:
    bool readSome();

    pid_t process_ = -1;
    FileDescriptor output_;
    FileDescriptor errors_;
    std::string unread_;
    ProgramResult result_;
};

// Without the escape sequences and carriage returns that only a terminal needs.
std::string withoutTerminalCodes(std::string_view text);

}  // namespace tarnbeck::testing
