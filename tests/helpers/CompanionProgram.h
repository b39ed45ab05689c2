// A program that runs beside a test and talks to it by lines. Needs nothing of the application.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace tarnbeck::testing {

// Has a pipe as its input, which ends with this object; so does the program, by SIGKILL if need be.
class CompanionProgram {
  public:
    // The first is the program, searched for in PATH. `environment` ("NAME=value") comes on top of
    // this process's own.
    explicit CompanionProgram(const std::vector<std::string>& command,
                              const std::vector<std::string>& environment = {});
    ~CompanionProgram();
    CompanionProgram(const CompanionProgram&) = delete;
    CompanionProgram& operator=(const CompanionProgram&) = delete;

    pid_t processIdentifier() const { return process_; }
    // The next line of its output, without the line feed. Absent at the end, and with a failed
    // expectation when none comes within a minute.
    std::optional<std::string> readLine();
    // Reads lines up to the first that begins so, and returns the rest of that one.
    std::optional<std::string> readPast(std::string_view beginning);
    void closeInput();
    void signal(int number) const;
    // Whether it has come to its end, without waiting for that.
    bool hasEnded();
    // Waits for the end: the exit status, or the negative number of the signal that ended it.
    int wait();

  private:
    bool readSome();

    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string unread_;
    std::optional<int> status_;
};

}  // namespace tarnbeck::testing
