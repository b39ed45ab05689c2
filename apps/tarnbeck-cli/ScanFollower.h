// Follows a scanner's walks through its repositories: shows how far they are, and knows afterwards
// what could not be scanned, and why.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Companion.h"
#include "Output.h"
#include "RepositoryScanner.h"
#include "RepositorySelection.h"
#include "ScanFailures.h"

namespace tarnbeck::cli {

class ScanFollower {
  public:
    explicit ScanFollower(Companion& companion);

    // The options of a scanner that is followed, and not yet started. The scanner's work must end
    // before this goes.
    RepositoryScanner::Options optionsFor(AppConfiguration configuration);

    // A walk through `total` repositories begins.
    void scanBegins(std::size_t total);
    void scanEnded();

    // What the last walk left out, in configured order, and behind it what was scanned but could
    // not be fetched.
    std::vector<SelectionProblem> problems(const RepositoryScanner& scanner) const;

  private:
    void repositoryBegins(const std::string& path);

    Companion& companion_;
    ScanFailures failures_;
    ProgressLine progress_;
    std::size_t begun_ = 0;
    std::size_t total_ = 0;
};

// Names each problem on standard error, and counts those that are failures.
std::size_t complainAbout(const std::vector<SelectionProblem>& problems);

}  // namespace tarnbeck::cli
