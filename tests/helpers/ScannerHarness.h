// A `RepositoryScanner` in virtual time, whose repository scans a test answers by hand.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "NameCollator.h"
#include "RepositoryScanner.h"
#include "ScanLog.h"
#include "Simulation.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

inline GitRepository repositoryAt(const std::string& path) {
    GitRepository repository;
    repository.path = path;
    repository.name = path.substr(path.rfind('/') + 1);
    repository.currentBranch = "main";
    repository.branches = {{.name = "main", .isCurrent = true}};
    return repository;
}

class ScannerHarness {
  public:
    explicit ScannerHarness(std::vector<std::string> repoPaths = {}) {
        options.configuration.repoPaths = std::move(repoPaths);
        options.autoStart = false;
        options.scanRepositoryHandler = [this](const std::string& path, ScanCompletion completion) {
            scannedPaths.push_back(path);
            if (answersAtOnce) {
                completion(answer(path));
            } else {
                waiting.emplace_back(path, std::move(completion));
            }
        };
    }

    RepositoryScanner& make() {
        scanner = std::make_unique<RepositoryScanner>(
            RepositoryScanner::Services{.loop = simulation.loop,
                                        .queues = simulation.queues,
                                        .log = log,
                                        .collator = collator,
                                        .git =
                                            [this](const GitInvocation& invocation) {
                                                gitInvocations.push_back(invocation);
                                                return gitAnswer;
                                            },
                                        .home = folder.path()},
            options);
        observation = scanner->observe([this](auto property) { notified.push_back(property); });
        return *scanner;
    }

    // Answers the scan that has waited longest.
    void answerNext() {
        auto [path, completion] = std::move(waiting.front());
        waiting.pop_front();
        completion(answer(path));
        simulation.runUntilIdle();
    }

    // One whole refresh, answered at once.
    void refresh(const RepositoryRefreshRequest& request = {}) {
        answersAtOnce = true;
        scanner->requestRefresh(request);
        simulation.runUntilIdle();
    }

    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& repository : scanner->repositories()) result.push_back(repository->name);
        return result;
    }

    TemporaryFolder folder;
    Simulation simulation;
    ScanLog log{{.home = folder.path()}, simulation.loop, simulation.queues};
    NameCollator collator{"en_US"};
    RepositoryScanner::Options options;
    // What a scan of the path gives; by default a tidy repository at that path.
    std::function<std::optional<GitRepository>(const std::string& path)> answer = repositoryAt;
    bool answersAtOnce = false;
    std::deque<std::pair<std::string, ScanCompletion>> waiting;
    std::vector<std::string> scannedPaths;
    std::vector<GitInvocation> gitInvocations;
    std::optional<std::string> gitAnswer = "";  // to each of them
    std::vector<RepositoryScanner::Property> notified;
    RepositoryScanner::Observers::Token observation;
    std::unique_ptr<RepositoryScanner> scanner;
};

}  // namespace tarnbeck::testing
