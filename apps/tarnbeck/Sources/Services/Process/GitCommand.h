// Running git: a hard time-out, a complete environment of its own, and every outcome reduced to a
// text or nothing, with the reason in the scan log. `GIT_OPTIONAL_LOCKS` is 0, so that looking
// never takes the index lock that the user's own git needs.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ProcessLauncher.h"
#include "ScanLog.h"

namespace tarnbeck {

struct GitInvocation {
    std::vector<std::string> executableArgs;  // all of git's arguments
    std::string logRepoPath;                  // for log lines only
    std::vector<std::string> logicalArgs;     // without the selection of the repository, for lines
    std::chrono::nanoseconds timeout = std::chrono::seconds(15);
    bool allowEmpty = false;  // an empty answer is an answer
};

// Runs git and gives its trimmed standard output, or nothing. Blocks.
using GitRunner = std::function<std::optional<std::string>(const GitInvocation&)>;

class GitCommand {
  public:
    struct Options {
        std::string home;
        std::string executable = "/usr/bin/git";
    };

    // `launcher` and `log` must outlive it.
    GitCommand(Options options, ProcessLauncher& launcher, ScanLog& log);

    // Standard output without newlines at its ends. Nothing when git can't be launched, takes too
    // long, exits non-zero, or prints nothing where `allowEmpty` is false: the log says which.
    // Blocks, never from the main thread; any number of threads at once.
    std::optional<std::string> run(const GitInvocation& invocation) const;

  private:
    const Options options_;
    const ImmutableList<std::string> environment_;
    ProcessLauncher& launcher_;
    ScanLog& log_;
};

}  // namespace tarnbeck
