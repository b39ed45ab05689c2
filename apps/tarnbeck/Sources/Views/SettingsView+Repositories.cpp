// Settings that say which repositories there are: adding, removing, discovering.
#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "Paths.h"
#include "RepositoryDiscovery.h"
#include "SettingsView.h"
#include "Text.h"

namespace tarnbeck {

SettingsView::Paths SettingsView::parseMultilinePaths(std::string_view text,
                                                      std::string_view home) {
    Paths paths;
    forEachPiece(text, '\n', [&](std::string_view line) {
        std::string path = expandingTilde(trimmingBlanksAndTabs(line), home);
        if (!path.empty()) paths.push_back(std::move(path));
    });
    return paths;
}

// A path that is shown already keeps its identities.
ConfiguredRepo SettingsView::configuredRepo(std::string path) {
    const auto present = std::ranges::find(state_.configuredRepoPaths, path, &ConfiguredRepo::path);
    if (present != state_.configuredRepoPaths.end()) return *present;
    const SettingsControlId id = nextId_++;
    return {.id = id, .removeId = nextId_++, .path = std::move(path)};
}

std::set<std::string> SettingsView::configuredPaths() const {
    std::set<std::string> paths;
    for (const ConfiguredRepo& repo : state_.configuredRepoPaths) {
        paths.insert(expandingTilde(repo.path, services_.home));
    }
    return paths;
}

std::set<std::string> SettingsView::normalizedConfiguredPaths() const {
    Paths paths;
    for (const ConfiguredRepo& repo : state_.configuredRepoPaths) paths.push_back(repo.path);
    paths = normalizeDiscoveryPaths(paths, services_.home);
    return {paths.begin(), paths.end()};
}

void SettingsView::addCustomPath() {
    if (trimmingWhitespaceAndNewlines(state_.customPath).empty()) return;
    const std::string path = expandingTilde(state_.customPath, services_.home);
    services_.scanner.addRepo(path);
    if (!configuredPaths().contains(path)) {
        state_.configuredRepoPaths.push_back(configuredRepo(path));
    }
    state_.customPath.clear();
    showChange();
}

void SettingsView::removeRepo(SettingsControlId button) {
    const auto repo =
        std::ranges::find(state_.configuredRepoPaths, button, &ConfiguredRepo::removeId);
    if (repo == state_.configuredRepoPaths.end()) return;
    changeConfiguration(
        [path = repo->path](AppConfiguration& stored) { std::erase(stored.repoPaths, path); });
    saveConfiguration();
    services_.scanner.refreshFileWatchingPaths(true);
    services_.scanner.requestRefresh(RepositoryRefreshRequest::byHand());
    std::erase_if(state_.configuredRepoPaths,
                  [&](const ConfiguredRepo& each) { return each.removeId == button; });
    showChange();
}

// Scanning is what commits the texts of this pane. What is configured now, not only when the answer
// comes, is left out of it.
void SettingsView::discoverRepos() {
    const DiscoveryRequest request{
        .in = parseMultilinePaths(state_.scanDirsText, services_.home),
        .ignoring = parseMultilinePaths(state_.ignorePathsText, services_.home),
        .home = services_.home};
    const std::set<std::string> configured = normalizedConfiguredPaths();
    const std::uint64_t requestID = ++state_.discoveryScanRequestID;
    state_.isDiscoveryScanInProgress = true;
    changeConfiguration([&](AppConfiguration& stored) {
        stored.scanDirectories = request.in;
        stored.discoveryIgnorePaths = request.ignoring;
    });
    saveConfiguration();
    auto deliver = anchor_.guarded([requestID](SettingsView& self, const Paths& paths) {
        self.takeDiscovered(requestID, paths);
    });
    services_.queues.userInitiated([request, configured, deliver, &loop = services_.loop] {
        Paths paths = tarnbeck::discoverRepos(request);
        std::erase_if(paths, [&](const std::string& path) { return configured.contains(path); });
        loop.post([deliver, paths = std::move(paths)] { deliver(paths); });
    });
    showChange();
}

// A scan that is not the newest any more owns nothing.
void SettingsView::takeDiscovered(std::uint64_t requestID, const Paths& paths) {
    if (requestID != state_.discoveryScanRequestID) return;
    state_.discoveredRepos.clear();
    const std::set<std::string> configured = normalizedConfiguredPaths();  // some may be new
    for (const std::string& path : paths) {
        if (configured.contains(path)) continue;
        state_.discoveredRepos.push_back(
            {.id = nextId_++, .path = path, .name = std::string(lastPathComponent(path))});
    }
    state_.hasDiscovered = true;
    state_.isDiscoveryScanInProgress = false;
    showChange();
}

SettingsView::Paths SettingsView::selectedPaths() const {
    Paths paths;
    for (const DiscoveredRepo& repo : state_.discoveredRepos) {
        if (repo.isSelected) paths.push_back(repo.path);
    }
    return paths;
}

void SettingsView::dropSelected() {
    std::erase_if(state_.discoveredRepos, &DiscoveredRepo::isSelected);
}

void SettingsView::addSelectedRepos() {
    if (!state_.hasSelection()) return;
    std::set<std::string> configured = configuredPaths();
    for (const std::string& path : selectedPaths()) {
        services_.scanner.addRepo(path);
        if (!configured.insert(path).second) continue;
        state_.configuredRepoPaths.push_back(configuredRepo(path));
    }
    std::ranges::sort(state_.configuredRepoPaths, {}, &ConfiguredRepo::path);
    dropSelected();
    showChange();
}

void SettingsView::ignoreSelectedRepos() {
    if (!state_.hasSelection()) return;
    Paths ignored = parseMultilinePaths(state_.ignorePathsText, services_.home);
    for (std::string& path : selectedPaths()) {
        if (std::ranges::find(ignored, path) == ignored.end()) ignored.push_back(std::move(path));
    }
    state_.ignorePathsText = joined(ignored, "\n");
    changeConfiguration(
        [&](AppConfiguration& stored) { stored.discoveryIgnorePaths = std::move(ignored); });
    saveConfiguration();
    dropSelected();
    showChange();
}

}  // namespace tarnbeck
