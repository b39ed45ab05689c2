#include <utility>

#include "MainView.h"
#include "RepositorySectionLayout.h"

namespace tarnbeck {
namespace {

bool isInProgress(const std::unordered_map<std::string, bool>& byPath, const std::string& path) {
    const auto found = byPath.find(path);
    return found != byPath.end() && found->second;
}

}  // namespace

bool MainView::showDependencyDetails() const {
    return domainMode_ == DomainMode::dependencies || domainMode_ == DomainMode::combined;
}

// The sections may be told of anything that happens; an empty path is about the alert or the toast.
void MainView::sectionChanged(const std::string& path) {
    const auto found = sectionsByPath_.find(path);
    if (found != sectionsByPath_.end()) found->second.isChanged = true;
    markDirty();
}

void MainView::takeRepositories() {
    for (const RepositorySnapshot& repository : scanner_.repositories()) {
        takeRepository(repository);
    }
    if (sectionsByPath_.size() > scanner_.repositories().size()) forgetGoneRepositories();
    facts_.dropReplaced(scanner_.repositories().size());
}

void MainView::takeRepository(const RepositorySnapshot& repository) {
    Section& section = sectionsByPath_[repository->path];
    section.lastFlush = flushCount_;
    section.isShown = false;
    if (section.repository == repository) return;
    section.isChanged = true;
    retire(std::exchange(section.repository, repository));
    sections_.repositoryChanged(*repository);
}

void MainView::forgetGoneRepositories() {
    for (auto entry = sectionsByPath_.begin(); entry != sectionsByPath_.end();) {
        if (entry->second.lastFlush == flushCount_) {
            ++entry;
            continue;
        }
        retire(std::move(entry->second.repository));
        retire(std::move(entry->second.content));
        sections_.forget(entry->first);
        entry = sectionsByPath_.erase(entry);
    }
}

void MainView::renewSections() {
    for (const RepositorySnapshot& repository : filteredRepos_) {
        Section& section = sectionsByPath_.at(repository->path);
        section.isShown = true;
        renewSection(section);
    }
}

// What was made of the section stays as long as all that it was made of does.
void MainView::renewSection(Section& section) {
    const bool needsAttention = facts_.of(section.repository).needsAttention(domainMode_);
    SectionFlags flags = flagsOf(*section.repository, needsAttention);
    if (!section.isChanged && section.flags == flags) return;
    section.isChanged = false;
    section.revision = ++lastRevision_;
    section.flags = std::move(flags);
    section.height.reset();
    retire(std::move(section.content));
}

// Until the user has touched a section, it is open while its repository needs attention.
bool MainView::isOpen(const std::string& path, bool needsAttention) const {
    const auto chosen = expandState_.find(path);
    return chosen == expandState_.end() ? needsAttention : chosen->second;
}

SectionFlags MainView::flagsOf(const GitRepository& repository, bool needsAttention) const {
    const RepositoryScanner::State& state = scanner_.state();
    const AppConfiguration& configuration = state.configuration;
    const RepositorySections::Callbacks& callbacks = sections_.callbacks();
    const std::string& path = repository.path;
    const bool isColumn = viewMode_ == ViewMode::columns;
    return {
        .isExpanded = isColumn || isOpen(path, needsAttention),
        .canCollapse = !isColumn,
        .showRemotes = configuration.showRemoteBranches,
        .showTags = configuration.showTags,
        .showGitDetails = domainMode_ == DomainMode::git || domainMode_ == DomainMode::combined,
        .showIssuesOnly = domainMode_ == DomainMode::issues,
        .showDependencyDetails = showDependencyDetails(),
        .showIssues = configuration.showIssues,
        .issueScanInProgress = state.issueScanInProgress,
        .issueReloadInProgress = isInProgress(state.issueScanInProgressForRepo, path),
        .dependencyReloadInProgress = isInProgress(state.dependencyScanInProgressForRepo, path),
        .gitReloadInProgress = isInProgress(state.gitScanInProgressForRepo, path),
        .canRefreshIssues = callbacks.onRefreshIssues != nullptr,
        .canRefreshDependencies = callbacks.onRefreshDependencies != nullptr,
        .canRefreshGit = callbacks.onRefreshGit != nullptr,
        .canSyncRepo = callbacks.onSyncRepo != nullptr,
        .searchHighlight = debouncedSearchText_,
    };
}

MainView::Section* MainView::shownSection(const std::string& path) {
    const auto found = sectionsByPath_.find(path);
    return found == sectionsByPath_.end() || !found->second.isShown ? nullptr : &found->second;
}

SectionInput MainView::inputOf(const Section& section) {
    return {.repository = *section.repository,
            .state = sections_.stateOf(section.repository->path),
            .flags = section.flags};
}

std::shared_ptr<const SectionContent> MainView::section(const std::string& path) {
    Section* section = shownSection(path);
    if (!section) return nullptr;
    if (!section->content) {
        section->content =
            std::make_shared<const SectionContent>(sectionContent(inputOf(*section)));
    }
    return section->content;
}

double MainView::sectionHeight(const std::string& path) {
    Section* section = shownSection(path);
    if (!section) return 0;
    if (!section->height) {
        section->height =
            RepositorySectionLayout::sectionHeight(sectionRowKinds(inputOf(*section)));
    }
    return *section->height;
}

void MainView::toggleSection(const std::string& path) {
    const Section* section = shownSection(path);
    if (!section || viewMode_ == ViewMode::columns) return;
    const bool needsAttention = facts_.of(section->repository).needsAttention(domainMode_);
    expandState_[path] = !isOpen(path, needsAttention);
    markDirty();
}

void MainView::perform(const Request& request) {
    if (request.rowId.empty() && request.kind == RowActionKind::toggle) {
        return toggleSection(request.path);
    }
    const auto content = section(request.path);
    if (!content) return;
    const SectionFlags flags = shownSection(request.path)->flags;
    sections_.perform({.content = *content,
                       .flags = flags,
                       .rowId = request.rowId,
                       .kind = request.kind,
                       .occurrence = request.occurrence});
}

void MainView::retire(std::shared_ptr<const void> unused) {
    if (unused) retired_.push_back(std::move(unused));
}

void MainView::freeRetired() {
    if (retired_.empty()) return;
    queues_.utility([retired = std::exchange(retired_, {})] {});
}

}  // namespace tarnbeck
