// The dependencies of all repositories: one walk at a time behind the full scans, each repository's
// verdict shown as soon as it is there.
#include <memory>
#include <utility>

#include "RepositoryScanner.h"

namespace tarnbeck {

void RepositoryScanner::scheduleDependencyScan(const std::vector<RepositorySnapshot>& repositories,
                                               int generation) {
    DependencyPass pass{.generation = generation};
    for (const auto& repository : repositories) {
        if (repository->dependencySummary.status() != DependencyHealth::notApplicable) {
            pass.paths.push_back(repository->path);
        }
    }
    const auto total = static_cast<std::int64_t>(pass.paths.size());
    publish(Property::dependencyScanInProgress, &State::dependencyScanInProgress, total > 0);
    setDependencyScanCompletedCount(0);
    publish(Property::dependencyScanTotalCount, &State::dependencyScanTotalCount, total);
    if (total == 0) return;
    continueDependencyScan(std::make_shared<const DependencyPass>(std::move(pass)), 0);
}

// A superseded pass walks on to its end without doing anything.
void RepositoryScanner::continueDependencyScan(const std::shared_ptr<const DependencyPass>& pass,
                                               std::size_t index) {
    services_.loop.post(anchor_.guarded([pass, index](RepositoryScanner& self) {
        if (index < pass->paths.size()) return self.scanDependencies(pass, index);
        if (!self.isCurrent(*pass)) return;
        self.publish(Property::dependencyScanInProgress, &State::dependencyScanInProgress, false);
    }));
}

void RepositoryScanner::scanDependencies(const std::shared_ptr<const DependencyPass>& pass,
                                         std::size_t index) {
    const std::string& path = pass->paths[index];
    if (!mayScanDependencies(*pass, path)) {
        if (isCurrent(*pass)) setDependencyScanCompletedCount(index + 1);
        return continueDependencyScan(pass, index + 1);
    }
    setInProgress(dependencyScan, path, true);
    askForDependencies(path, false,
                       [pass, index](RepositoryScanner& self, const DependencySummary& summary) {
                           self.applyDependencyResult(*pass, index, summary);
                           self.continueDependencyScan(pass, index + 1);
                       });
}

// A repository whose targeted refresh is running is asked about once more when that has ended.
bool RepositoryScanner::mayScanDependencies(const DependencyPass& pass, const std::string& path) {
    if (!isCurrent(pass)) return false;
    if (!isInProgress(dependencyScan, path)) return true;
    queuedDependencyRefreshPaths_.insert(path);
    return false;
}

void RepositoryScanner::applyDependencyResult(const DependencyPass& pass, std::size_t index,
                                              const DependencySummary& summary) {
    const std::string& path = pass.paths[index];
    setInProgress(dependencyScan, path, false);
    if (isCurrent(pass) && takeDependencies(path, summary) && isCurrent(pass)) {
        setDependencyScanCompletedCount(index + 1);
    }
    refreshDependenciesWhereQueued(path);
}

void RepositoryScanner::refreshDependenciesForRepo(const std::string& path) {
    if (!repositoryAt(path)) return;
    if (isInProgress(dependencyScan, path)) {
        queuedDependencyRefreshPaths_.insert(path);
        return;
    }
    setInProgress(dependencyScan, path, true);
    askForDependencies(path, true,
                       [path](RepositoryScanner& self, const DependencySummary& summary) {
                           self.takeDependencies(path, summary);
                           self.setInProgress(dependencyScan, path, false);
                           self.refreshDependenciesWhereQueued(path);
                       });
}

void RepositoryScanner::refreshDependenciesWhereQueued(const std::string& path) {
    if (queuedDependencyRefreshPaths_.erase(path) > 0) refreshDependenciesForRepo(path);
}

bool RepositoryScanner::takeDependencies(const std::string& path,
                                         const DependencySummary& summary) {
    const RepositorySnapshot present = repositoryAt(path);
    if (!present) return false;
    GitRepository changed = *present;
    changed.dependencySummary = summary;
    replaceRepository(std::move(changed));
    return true;
}

void RepositoryScanner::setDependencyScanCompletedCount(std::size_t count) {
    publish(Property::dependencyScanCompletedCount, &State::dependencyScanCompletedCount,
            static_cast<std::int64_t>(count));
}

bool RepositoryScanner::isCurrent(const DependencyPass& pass) const {
    return pass.generation == dependencyScanGeneration_;
}

template <class Apply>
void RepositoryScanner::askForDependencies(const std::string& path, bool forceRefresh,
                                           Apply apply) {
    services_.queues.utility([path, forceRefresh, apply = anchor_.guarded(apply), gone = gone_,
                              handler = dependencyScanHandler_, &loop = services_.loop] {
        if (*gone) return;
        loop.post([apply, summary = handler(path, forceRefresh)] { apply(summary); });
    });
}

}  // namespace tarnbeck
