#include "FullScan.h"

#include <chrono>
#include <utility>

#include "FileSystem.h"

namespace tarnbeck {

using namespace std::chrono_literals;

FullScan::FullScan(Tools tools, Input input, std::function<void(Result)> finished)
    : tools_(std::move(tools)), input_(std::move(input)), finished_(std::move(finished)) {}

void FullScan::start() {
    tools_.queues.userInitiated([self = shared_from_this()] {
        self->gatherFetchDates();
        self->scanOn();
    });
}

// Here and not on the main thread, since the first question of all reads a file.
void FullScan::gatherFetchDates() {
    for (const std::string& path : input_.configuredPaths) {
        if (const auto date = tools_.lastKnownIssueFetchDate(path)) fetchDates_[path] = *date;
    }
}

void FullScan::scanOn() {
    while (next_ < input_.repoPaths.size()) {
        if (cancelled_) return;
        const std::size_t index = next_++;
        if (input_.refreshRemotes) fetch(input_.configuredPaths[index]);
        halfDone_ = false;
        tools_.scanRepositoryHandler(
            input_.repoPaths[index],
            [self = shared_from_this()](std::optional<GitRepository> repository) {
                self->keep(std::move(repository));
                if (self->halfDone_.exchange(true)) self->scanOn();
            });
        if (!halfDone_.exchange(true)) return;
    }
    if (!cancelled_) finish();
}

void FullScan::fetch(const std::string& path) {
    if (!exists(path + "/.git")) return;
    tools_.git({.executableArgs = {"-C", path, "fetch", "--prune", "--quiet"},
                .logRepoPath = path,
                .logicalArgs = {"fetch", "--prune", "--quiet"},
                .timeout = 15s,
                .allowEmpty = true});
}

void FullScan::keep(std::optional<GitRepository> repository) {
    if (!repository) return;
    scanned_.push_back(std::make_shared<const GitRepository>(*std::move(repository)));
}

void FullScan::finish() {
    Result result;
    result.consecutiveScanFailuresByPath =
        RepositoryRefreshSupport::updatedConsecutiveScanFailures({
            .previousFailureCounts = input_.consecutiveScanFailuresByPath,
            .configuredPaths = input_.configuredPaths,
            .scanned = scanned_,
        });
    result.merged = RepositoryRefreshSupport::mergeScanResults(
        {
            .scanned = scanned_,
            .configuredPaths = input_.configuredPaths,
            .previousReposByPath = input_.previousReposByPath,
            .consecutiveScanFailuresByPath = result.consecutiveScanFailuresByPath,
        },
        tools_.collator, tools_.log);
    result.previousReposByPath = std::move(input_.previousReposByPath);
    result.fetchDates = std::move(fetchDates_);
    finished_(std::move(result));
}

}  // namespace tarnbeck
