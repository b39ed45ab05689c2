// Dropping the changes of one file: the only operation of the system that destroys work. It touches
// the named file and nothing else, whatever the name looks like and whatever has come into the
// file's place meanwhile.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "ProcessLauncher.h"

namespace tarnbeck {

struct DiscardRequest {
    std::string repoPath;  // the work tree, the main or a linked one
    std::string filePath;  // as in a `FileChange`: relative to it, quoted where git quotes it
    std::string status;    // of the `FileChange`
};

class GitDiscardService {
  public:
    struct Options {
        std::string home;
        std::string executable = "/usr/bin/git";
    };
    // Gets one line for each failure: "Discard failed for a.txt: fatal: …". Any thread.
    using Logger = std::function<void(std::string_view line)>;

    // `launcher` must outlive it.
    GitDiscardService(Options options, ProcessLauncher& launcher, Logger logger);

    // Deletes the file if it is untracked ("??"), and otherwise brings the index and the work tree
    // back to the last commit's version of it. Absent on success; otherwise words for the user:
    // git's own, why it was not even tried, or that nothing has changed by it.
    //
    // git is asked first what the name would reach, and it is not let loose on more than that one
    // file. (By itself it makes room for a file that it restores, and removes a folder of new work
    // that stands in its place.)
    //
    // Blocks until git has ended, however long that takes; never from the main thread. Any number
    // of threads at once.
    std::optional<std::string> discardFileChange(const DiscardRequest& request) const;

  private:
    const Options options_;
    const ImmutableList<std::string> environment_;
    ProcessLauncher& launcher_;
    const Logger logger_;
};

}  // namespace tarnbeck
