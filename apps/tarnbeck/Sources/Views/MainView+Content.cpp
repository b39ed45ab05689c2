#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "ControlStripContent.h"
#include "MainView.h"
#include "StatusBarContent.h"

namespace tarnbeck {
namespace {

std::string captionOfNoMatch(DomainMode domain) {
    switch (domain) {
        case DomainMode::git:
            return "No repos found";
        case DomainMode::issues:
            return "No repos with open issues or PRs found";
        case DomainMode::dependencies:
            return "No repos with dependency updates found";
        case DomainMode::combined:
            return "No repos with action needed found";
    }
    return {};
}

}  // namespace

void MainView::flush() {
    isDirty_ = false;
    ++flushCount_;
    takeRepositories();
    filterRepos();
    renewSections();
    publish(makeContent());
    freeRetired();
}

void MainView::publish(MainViewContent content) {
    if (content == content_) return;
    content_ = std::move(content);
    Observers::tell(observers_.current());
}

void MainView::filterRepos() {
    std::vector<RepositorySnapshot> repos = filterAndSortRepos({.repos = scanner_.repositories(),
                                                                .domainMode = domainMode_,
                                                                .filterMode = filterMode_,
                                                                .searchText = debouncedSearchText_,
                                                                .sortMode = effectiveSortMode()},
                                                               collator_, facts_);
    std::swap(repos, filteredRepos_);
    for (RepositorySnapshot& former : repos) retire(std::move(former));
    const auto samePath = [](const RepositorySnapshot& repo, const std::string& path) {
        return repo->path == path;
    };
    if (std::ranges::equal(filteredRepos_, visibleRepoPaths_, samePath)) return;
    visibleRepoPaths_.clear();
    for (const auto& repo : filteredRepos_) visibleRepoPaths_.push_back(repo->path);
    scanner_.setPrioritizedIssueRepoPaths(visibleRepoPaths_);
    resetSplitView();
}

MainViewContent MainView::makeContent() {
    const AppConfiguration& configuration = scanner_.configuration();
    MainViewContent content{
        .area = makeArea(),
        .statusBar = makeStatusBar(),
        .toast = sections_.toast(),
        .alert = sections_.alert(),
        .backdropOpacity = host_.usesPopoverAppearance ? configuration.popoverBackdropOpacity
                                                       : configuration.appBackdropOpacity,
        .splitViewResetToken = splitViewResetToken_,
    };
    if (host_.embedToolbarInContent) content.strip = makeStrip();
    return content;
}

ControlStrip MainView::makeStrip() const {
    using Failed = system_awake::CaffeinateState::Failed;
    const auto* failed = std::get_if<Failed>(&caffeinateController_.state().value);
    return controlStrip({.viewMode = viewMode_,
                         .sortModes = sortModes(domainMode_),
                         .sortMode = effectiveSortMode(),
                         .isAwake = caffeinateController_.isActive(),
                         .awakeFailure = failed ? failed->message : std::string(),
                         .filter = filterMode_,
                         .domain = domainMode_,
                         .searchText = searchText_});
}

std::variant<EmptyState, EmptyResult, SectionList> MainView::makeArea() const {
    if (scanner_.repositories().empty() && !scanner_.isScanning()) {
        return EmptyState{.symbol = "arrow.triangle.branch",
                          .title = "No repositories configured",
                          .line = "Open Settings to add repositories",
                          .button = "Open Settings"};
    }
    if (filteredRepos_.empty()) return emptyResult();
    SectionList list{.mode = viewMode_};
    list.entries.reserve(visibleRepoPaths_.size());
    for (const std::string& path : visibleRepoPaths_) {
        list.entries.push_back({.path = path, .revision = sectionsByPath_.at(path).revision});
    }
    return list;
}

EmptyResult MainView::emptyResult() const {
    const RepositoryScanner::State& state = scanner_.state();
    if (showDependencyDetails() && state.dependencyScanInProgress) {
        return {.isLoading = true,
                .text = fmt::format("Checking dependencies… ({}/{})",
                                    state.dependencyScanCompletedCount,
                                    state.dependencyScanTotalCount)};
    }
    return {.symbol = viewMode_ == ViewMode::columns ? "checkmark.circle.fill" : "",
            .text = captionOfNoMatch(domainMode_)};
}

StatusBar MainView::makeStatusBar() {
    StatusValues values;
    for (const RepositorySnapshot& repository : scanner_.repositories()) {
        RepositoryFacts& facts = facts_.of(repository);
        const DependencySummary& dependencies = repository->dependencySummary;
        ++(facts.needsAttention(domainMode_) ? values.attention : values.healthy);
        if (facts.needsGitAttention()) ++values.gitAttention;
        if (facts.needsIssueAttention()) ++values.issueAttention;
        if (facts.needsDependencyAttention()) {
            ++values.dependencyAttention;
            if (dependencies.hasSyncNeeded()) ++values.syncNeeded;
        }
        if (dependencies.status() == DependencyHealth::checking) ++values.checking;
    }
    const WallTime now = loop_.wallNow();
    const RepositoryScanner::State& state = scanner_.state();
    if (state.lastIssueRefresh) values.sinceIssueRefresh = now - *state.lastIssueRefresh;
    if (state.lastScan) values.sinceScan = now - *state.lastScan;
    return statusBarContent(values);
}

}  // namespace tarnbeck
