#include "ScanFollower.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

#include "Paths.h"

namespace tarnbeck::cli {

ScanFollower::ScanFollower(Companion& companion)
    : companion_(companion), failures_(companion.log()) {}

RepositoryScanner::Options ScanFollower::optionsFor(AppConfiguration configuration) {
    const RepositoryScanner::Sources sources{.gitHub = companion_.gitHub(),
                                             .dependencyTools = companion_.dependencyTools(),
                                             .dependencyMemory = companion_.dependencyMemory()};
    auto options = RepositoryScanner::ordinaryOptions(companion_.services(), sources,
                                                      companion_.place(), std::move(configuration));
    options.autoStart = false;
    options.scanRepositoryHandler = [this, scan = std::move(options.scanRepositoryHandler)](
                                        const std::string& path, ScanCompletion completion) {
        companion_.loop().post([this, path] { repositoryBegins(path); });
        scan(path, std::move(completion));
    };
    return options;
}

void ScanFollower::scanBegins(std::size_t total) {
    failures_.forget();
    begun_ = 0;
    total_ = total;
}

void ScanFollower::repositoryBegins(const std::string& path) {
    if (begun_ == total_) return;  // one that is scanned by itself
    progress_.show(fmt::format("Scanning {}/{} {}", ++begun_, total_, lastPathComponent(path)));
}

void ScanFollower::scanEnded() {
    begun_ = total_;
    progress_.clear();
}

std::vector<SelectionProblem> ScanFollower::problems(const RepositoryScanner& scanner) const {
    std::unordered_set<std::string> scanned;
    for (const auto& repository : scanner.repositories()) scanned.insert(repository->path);
    std::vector<SelectionProblem> problems;
    for (const std::string& configured : scanner.configuration().repoPaths) {
        const std::string path = expandingTilde(configured, companion_.home());
        if (!scanned.contains(path)) problems.push_back({path, failures_.reasonFor(path)});
    }
    std::ranges::copy_if(failures_.fetchProblems(), std::back_inserter(problems),
                         [&](const auto& problem) { return scanned.contains(problem.path); });
    return problems;
}

std::size_t complainAbout(const std::vector<SelectionProblem>& problems) {
    for (const auto& problem : problems) complain(problem.path + ": " + problem.reason);
    const auto failures = std::ranges::count(problems, true, &SelectionProblem::isFailure);
    return static_cast<std::size_t>(failures);
}

}  // namespace tarnbeck::cli
