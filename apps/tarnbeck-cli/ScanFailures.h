// Why repositories could not be scanned, in words, learnt from what the scan log is told.
#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "RepositorySelection.h"
#include "ScanLog.h"

namespace tarnbeck::cli {

class ScanFailures {
  public:
    explicit ScanFailures(ScanLog& log);

    // Why the scan of the (expanded) path gave nothing. Asks the file system.
    std::string reasonFor(const std::string& path) const;

    // What could not be fetched: no failure, but what is shown may be older than it seems.
    std::vector<SelectionProblem> fetchProblems() const;

    // Begins anew. Any thread.
    void forget();

  private:
    void note(std::string_view message);

    mutable std::mutex mutex_;
    std::unordered_map<std::string, std::string> lastFailure_;  // the log line, by path
    std::vector<std::string> failedFetches_;                    // the log lines
    ScanLog::Observers::Token observation_;
};

// "FAIL(128) git status at /x — fatal: bad" as a person would say it:
// "fatal: bad (git status, exit status 128)".
std::string failureInWords(std::string_view logLine);

// "/x" of "FAIL(128) git status at /x — fatal: bad".
std::string_view pathInFailure(std::string_view logLine);

}  // namespace tarnbeck::cli
