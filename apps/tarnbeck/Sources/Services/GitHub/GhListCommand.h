// Running `gh issue list` and `gh pr list`: the one road to GitHub's lists. `gh` gets a complete
// environment of its own and a hard time-out, since it sets itself none.
#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ProcessLauncher.h"
#include "ScanLog.h"

namespace tarnbeck {

// How long each wait for a child that lists may take.
struct GhTimeouts {
    std::chrono::nanoseconds run = std::chrono::seconds(30);
    // Between SIGTERM and SIGKILL; short, because nothing of a list is worth waiting for.
    std::chrono::nanoseconds termination = std::chrono::milliseconds(50);
    std::chrono::nanoseconds killing = std::chrono::seconds(1);
    std::chrono::nanoseconds drain = std::chrono::seconds(2);
};

class GhListCommand {
  public:
    struct Options {
        std::string home;
        std::vector<std::string> executables;  // the first that there is serves
        GhTimeouts timeouts = {};
    };
    struct List {
        std::string_view resource;  // "issue" or "pr"
        std::string_view ownerRepo;
        std::string_view jsonFields;  // comma-separated
    };

    // `launcher` and `log` must outlive it.
    GhListCommand(Options options, ProcessLauncher& launcher, ScanLog& log);

    // What `gh` printed about the open items, the newest 100 at most. Nothing when there is no
    // `gh`, or it can't be launched, takes too long or exits non-zero: the log says which. Blocks,
    // never from the main thread; any number of threads at once.
    std::optional<std::string> run(const List& list);

  private:
    // Looks once: whatever the first call finds, or does not find, stays.
    const std::optional<std::string>& findGhExecutable();
    std::optional<std::string> outputOf(ChildProcess& child, const List& list) const;

    const Options options_;
    const ImmutableList<std::string> environment_;
    ProcessLauncher& launcher_;
    ScanLog& log_;
    std::once_flag checked_;
    std::optional<std::string> executable_;
};

}  // namespace tarnbeck
