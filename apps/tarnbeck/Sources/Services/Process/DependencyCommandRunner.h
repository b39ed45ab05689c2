// Running any other tool (package managers, `gh`, `ps`): the same care as for git, and a full
// report instead of a text.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>  // where `stdout` and `stderr` are macros, they are so in every file
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ProcessLauncher.h"

namespace tarnbeck {

struct CommandResult {
    std::int32_t terminationStatus = -1;  // -1 when launching failed; a signal's number when killed
    std::string stdout;                   // without newlines at its ends; empty if not UTF-8
    std::string stderr;                   // without white space at its ends; empty if not UTF-8
    bool timedOut = false;                // still running at the deadline
    std::optional<std::string> launchError;  // "Failed to launch command: " and the system's words

    bool operator==(const CommandResult&) const = default;
};

struct Command {
    std::string executable;  // absolute
    std::vector<std::string> args;
    std::string cwd = "/";
    std::chrono::nanoseconds timeout{};
    // Told what both streams print as they print it, on the calling thread, also of what the result
    // then leaves out. A piece may end within a character.
    std::function<void(std::string_view bytes)> observer = {};
};

// What a caller that runs tools is handed.
using CommandRunner = std::function<CommandResult(const Command&)>;

class DependencyCommandRunner {
  public:
    // Where tools are looked for. Those that a user installed come before the system's: the
    // opposite of the order that git gets.
    static constexpr std::string_view searchPath =
        "/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin";

    // `launcher` must outlive it.
    DependencyCommandRunner(const std::string& home, ProcessLauncher& launcher);
    // The same care with another environment, "NAME=value", all of it.
    static DependencyCommandRunner withEnvironment(ImmutableList<std::string> environment,
                                                   ProcessLauncher& launcher);

    // Never fails and logs nothing: the caller decides. What was printed before a time-out is told
    // when the pipes reached their end. Blocks, never from the main thread; any number of threads.
    CommandResult runCommand(const Command& command) const;

  private:
    DependencyCommandRunner(ImmutableList<std::string> environment, ProcessLauncher& launcher);

    const ImmutableList<std::string> environment_;
    ProcessLauncher& launcher_;
};

}  // namespace tarnbeck
