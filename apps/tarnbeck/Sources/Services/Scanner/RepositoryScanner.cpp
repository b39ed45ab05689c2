#include "RepositoryScanner.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "GitHubScanner.h"
#include "Paths.h"
#include "RepositoryDiscovery.h"

namespace tarnbeck {

using namespace std::chrono_literals;

namespace {

constexpr auto pauseBeforeFollowUp = 300ms;
constexpr std::int64_t longestIntervalMinutes = std::int64_t{100} * 365 * 24 * 60;

const std::string& pathOf(const RepositorySnapshot& repository) {
    return repository->path;
}

std::optional<GitHubRepositoryData> knownData(const GitHubScanner& gitHub,
                                              const std::string& path) {
    auto issues = gitHub.lastKnownIssues(path);
    auto pullRequests = gitHub.lastKnownPullRequests(path);
    if (!issues && !pullRequests) return std::nullopt;
    GitHubRepositoryData data;
    if (issues) data.issues = *std::move(issues);
    if (pullRequests) data.pullRequests = *std::move(pullRequests);
    return data;
}

}  // namespace

RepositoryScanner::RepositoryScanner(Services services, Options options)
    : services_(std::move(services)),
      scanRepositoryHandler_(std::move(options.scanRepositoryHandler)),
      issueScanHandler_(std::move(options.issueScanHandler)),
      dependencyScanHandler_(std::move(options.dependencyScanHandler)),
      fileSystemRefreshMinimumInterval_(options.fileSystemRefreshMinimumInterval),
      issueRefreshInterval_(options.issueRefreshInterval),
      knownGitHubData_(std::move(options.knownGitHubData)),
      saveConfiguration_(std::move(options.saveConfiguration)),
      report_(std::move(options.report)) {
    state_.configuration = std::move(options.configuration);
    state_.configuration.dropRepeatedRepoPaths(services_.home);
    if (options.autoStart) start();
}

void RepositoryScanner::start() {
    requestRefresh(RepositoryRefreshRequest::atStart());
    startFileWatching();
    startPeriodicScan();
    startPeriodicIssueRefresh();
}

RepositoryScanner::~RepositoryScanner() {
    *gone_ = true;
    if (const auto scan = fullScan_.lock()) scan->cancel();
}

RepositoryScanner::Options RepositoryScanner::ordinaryOptions(const Services& services,
                                                              GitHubScanner& gitHub,
                                                              const ConfigurationPlace& place,
                                                              AppConfiguration configuration) {
    const StaticScan tools{.loop = services.loop,
                           .queues = services.queues,
                           .log = services.log,
                           .git = services.git,
                           .home = services.home};
    const auto savingQueue = services.queues.serial("com.tarnbeck.configuration");
    return {
        .configuration = std::move(configuration),
        .autoStart = true,
        .scanRepositoryHandler =
            [tools](const std::string& path, const ScanCompletion& completion) {
                scanRepositoryImpl(tools, {.at = path, .retryCount = 0}, completion);
            },
        .issueScanHandler =
            [&gitHub](const std::string& path, GitHubIssueRefreshPolicy policy) {
                return gitHub.scan({.at = path, .policy = policy});
            },
        .knownGitHubData = {.lastKnownIssueFetchDate =
                                [&gitHub](const std::string& path) {
                                    return gitHub.lastKnownIssueFetchDate(path);
                                },
                            .lastKnownData =
                                [&gitHub](const std::string& path) {
                                    return knownData(gitHub, path);
                                }},
        .saveConfiguration =
            [savingQueue, place](const AppConfiguration& changed) {
                savingQueue->post([place, changed] { changed.save(place); });
            },
        .report = place.report,
    };
}

AppConfiguration RepositoryScanner::loadInitialConfiguration(const ConfigurationPlace& place) {
    return loadConfigurationDiscoveringRepos(place);
}

void RepositoryScanner::setConfiguration(AppConfiguration configuration) {
    configuration.dropRepeatedRepoPaths(services_.home);
    publish(Property::configuration, &State::configuration, std::move(configuration));
}

void RepositoryScanner::setRepositories(std::vector<RepositorySnapshot> repositories) {
    std::vector<RepositorySnapshot> replaced = std::move(state_.repositories);
    publish(Property::repositories, &State::repositories, std::move(repositories));
    // Thousands of texts are freed where nobody waits for it.
    services_.queues.utility([replaced = std::move(replaced)] {});
}

RepositorySnapshot RepositoryScanner::repositoryAt(const std::string& path) const {
    const auto found = std::ranges::find(repositories(), path, pathOf);
    return found == repositories().end() ? nullptr : *found;
}

void RepositoryScanner::replaceRepository(GitRepository repository) {
    const auto entry = std::ranges::find(state_.repositories, repository.path, pathOf);
    if (entry == state_.repositories.end()) return;
    auto snapshot = std::make_shared<const GitRepository>(std::move(repository));
    auto replaced = std::exchange(*entry, std::move(snapshot));
    Observers::tell(observers_.current(), Property::repositories);
    services_.queues.utility([replaced = std::move(replaced)] {});
}

bool RepositoryScanner::isInProgress(const Operation& operation, const std::string& path) const {
    return (state_.*operation.inProgress).contains(path);
}

void RepositoryScanner::setInProgress(const Operation& operation, const std::string& path,
                                      bool running) {
    if (running) {
        (state_.*operation.inProgress)[path] = true;
    } else {
        (state_.*operation.inProgress).erase(path);
    }
    Observers::tell(observers_.current(), operation.property);
}

std::int64_t RepositoryScanner::dirtyRepoCount() const {
    return std::ranges::count_if(repositories(),
                                 [](const auto& repository) { return !repository->isClean(); });
}

RepositoryScanner::Observers::Token RepositoryScanner::observe(Observers::Observer observer) {
    return observers_.add(std::move(observer));
}

void RepositoryScanner::startPeriodicScan() {
    scanTimer_.reset();
    const std::int64_t minutes =
        std::min(configuration().scanIntervalMinutes, longestIntervalMinutes);
    if (minutes < 1) return;
    scanTimer_.emplace(services_.loop, std::chrono::minutes(minutes),
                       anchor_.guarded([](auto& self) {
                           self.requestRefresh(RepositoryRefreshRequest::periodic());
                       }));
}

void RepositoryScanner::requestRefresh(const RepositoryRefreshRequest& request) {
    if (isScanning()) {
        queueRefresh(request);
    } else {
        startFullScan(request);
    }
}

void RepositoryScanner::queueRefresh(const RepositoryRefreshRequest& request) {
    scanRequestedWhileScanning_ = true;
    queuedRefreshRequest_ =
        queuedRefreshRequest_ ? queuedRefreshRequest_->mergedWith(request) : request;
}

void RepositoryScanner::startFullScan(const RepositoryRefreshRequest& request) {
    scanRequestedWhileScanning_ = false;
    activeRefreshRequest_ = request;
    queuedRefreshRequest_.reset();
    forgetPendingFileSystemEvents();  // the scan covers them
    publish(Property::isScanning, &State::isScanning, true);
    FullScan::Input input = fullScanInput(request);
    auto deliver = anchor_.guarded(
        [](RepositoryScanner& self, FullScan::Result& result) { self.finishFullScan(result); });
    const auto scan = std::make_shared<FullScan>(
        FullScan::Tools{.queues = services_.queues,
                        .log = services_.log,
                        .collator = services_.collator,
                        .git = services_.git,
                        .scanRepositoryHandler = scanRepositoryHandler_,
                        .lastKnownIssueFetchDate = knownGitHubData_.lastKnownIssueFetchDate},
        std::move(input), [&loop = services_.loop, deliver](FullScan::Result result) {
            loop.post([deliver, result = std::make_shared<FullScan::Result>(std::move(result))] {
                deliver(*result);
            });
        });
    fullScan_ = scan;
    scan->start();
}

FullScan::Input RepositoryScanner::fullScanInput(const RepositoryRefreshRequest& request) const {
    FullScan::Input input;
    input.repoPaths = configuration().repoPaths;
    input.configuredPaths.reserve(input.repoPaths.size());
    for (const std::string& path : input.repoPaths) {
        input.configuredPaths.push_back(expandingTilde(path, services_.home));
    }
    input.previousReposByPath = keyedByPath(repositories());
    input.consecutiveScanFailuresByPath = consecutiveScanFailuresByPath_;
    input.refreshRemotes = request.refreshRemotes;
    return input;
}

void RepositoryScanner::finishFullScan(FullScan::Result& result) {
    consecutiveScanFailuresByPath_ = std::move(result.consecutiveScanFailuresByPath);
    replaceRepositories(result);
    takeLastIssueRefreshFrom(result.fetchDates);
    refreshFileWatchingPaths(false);
    lastFileSystemRefreshAt_ = services_.loop.wallNow();
    publish(Property::lastScan, &State::lastScan, lastFileSystemRefreshAt_);
    // Taken before anybody is told: an observer may ask for the next scan at once.
    const auto request =
        std::exchange(activeRefreshRequest_, std::nullopt).value_or(RepositoryRefreshRequest{});
    const auto followUp = takeQueuedRequest();
    publish(Property::isScanning, &State::isScanning, false);
    startBackgroundPasses(request);
    if (followUp) requestRefreshAfterPause(*followUp);
}

void RepositoryScanner::replaceRepositories(FullScan::Result& result) {
    // The list may have changed during the scan; what it holds now is what is carried over.
    SnapshotsByPath present = keyedByPath(repositories());
    for (RepositorySnapshot& repository : result.merged) {
        // One that could not be scanned keeps its snapshot: that of now, not that of the beginning.
        const auto before = result.previousReposByPath.find(repository->path);
        if (before == result.previousReposByPath.end() || before->second != repository) continue;
        const auto now = present.find(repository->path);
        if (now != present.end()) repository = now->second;
    }
    setRepositories(RepositoryRefreshSupport::preserveAsyncData(
        std::move(result.merged), {.previousReposByPath = present,
                                   .cachedGitHubDataByPath = knownGitHubData_.lastKnownData}));
    services_.queues.utility(
        [present = std::move(present), previous = std::move(result.previousReposByPath)] {});
}

void RepositoryScanner::takeLastIssueRefreshFrom(const FetchDates& fetchDates) {
    if (state_.lastIssueRefresh) return;
    std::optional<WallTime> latest;
    for (const auto& repository : repositories()) {
        const auto date = fetchDates.find(repository->path);
        if (date != fetchDates.end()) latest = std::max(latest, std::optional(date->second));
    }
    if (latest) publish(Property::lastIssueRefresh, &State::lastIssueRefresh, latest);
}

// Each pass that becomes due supersedes the one before it of its kind.
void RepositoryScanner::startBackgroundPasses(const RepositoryRefreshRequest& request) {
    if (request.refreshDependencies) {
        scheduleDependencyScan(repositories(), ++dependencyScanGeneration_);
    }
    if (request.refreshIssues) refreshIssues(request.forceIssueRefresh);
}

std::optional<RepositoryRefreshRequest> RepositoryScanner::takeQueuedRequest() {
    if (!std::exchange(scanRequestedWhileScanning_, false)) return std::nullopt;
    return std::exchange(queuedRefreshRequest_, std::nullopt).value_or(RepositoryRefreshRequest{});
}

void RepositoryScanner::requestRefreshAfterPause(const RepositoryRefreshRequest& request) {
    services_.loop
        .after(pauseBeforeFollowUp,
               anchor_.guarded([request](auto& self) { self.requestRefresh(request); }))
        .detach();
}

}  // namespace tarnbeck
