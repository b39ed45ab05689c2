#include "MainView.h"

#include <utility>

#include "CaffeinateAssertion.h"

namespace tarnbeck {

using namespace std::chrono_literals;

namespace {

constexpr auto searchDebounce = 200ms;
constexpr auto ageInterval = 60s;  // of working the ages out anew

}  // namespace

MainView::MainView(Services services, Host host)
    : scanner_(services.scanner),
      caffeinateController_(services.caffeinateController),
      collator_(services.collator),
      loop_(services.sections.loop),
      queues_(services.sections.queues),
      onOpenSettings_(std::move(services.onOpenSettings)),
      host_(host),
      sections_(withCallbacks(std::move(services.sections)),
                [this](const std::string& path) { sectionChanged(path); }),
      scannerObservation_(scanner_.observe([this](RepositoryScanner::Property) { markDirty(); })),
      caffeinateObservation_(caffeinateController_.observe([this] { markDirty(); })) {}

MainView::~MainView() = default;

RepositorySections::Services MainView::withCallbacks(RepositorySections::Services services) {
    services.callbacks = {
        .onRequestRefresh = [this] { scan(); },
        .onRefreshIssues = [this](const std::string& path) { scanner_.refreshIssuesForRepo(path); },
        .onRefreshDependencies =
            [this](const std::string& path) { scanner_.refreshDependenciesForRepo(path); },
        .onRefreshGit = [this](const std::string& path) { scanner_.refreshGitForRepo(path); },
        .onSyncRepo = [this](const std::string& path) { scanner_.syncRepo(path); },
    };
    return services;
}

MainView::Observers::Token MainView::observe(Observers::Observer observer) {
    return observers_.add(std::move(observer));
}

void MainView::setVisible(bool visible) {
    if (visible == isVisible_) return;
    isVisible_ = visible;
    if (!visible) {
        ageTimer_.reset();
        return;
    }
    ageTimer_.emplace(loop_, ageInterval, [this] { markDirty(); });
    flush();
    // Another view may have been looked at meanwhile.
    scanner_.setPrioritizedIssueRepoPaths(visibleRepoPaths_);
}

void MainView::markDirty() {
    isDirty_ = true;
    if (!isVisible_ || isFlushPosted_) return;
    isFlushPosted_ = true;
    const auto flushIfNeeded = anchor_.guarded([](MainView& self) {
        self.isFlushPosted_ = false;
        if (self.isVisible_ && self.isDirty_) self.flush();
    });
    loop_.post([flushIfNeeded] { flushIfNeeded(); });
}

void MainView::toggleViewMode() {
    viewMode_ = viewMode_ == ViewMode::columns ? ViewMode::list : ViewMode::columns;
    markDirty();
}

void MainView::scan() {
    scanner_.requestRefresh(RepositoryRefreshRequest::byHand());
}

void MainView::chooseSort(SortMode mode) {
    sortMode_ = mode;
    markDirty();
}

void MainView::equalize() {
    ++splitViewResetToken_;
    markDirty();
}

void MainView::toggleAwake() {
    caffeinateController_.toggle(system_awake::standardCaffeinateAssertions);
}

void MainView::openSettings() {
    if (onOpenSettings_) onOpenSettings_();
}

void MainView::chooseFilter(FilterMode mode) {
    if (mode == filterMode_) return;
    filterMode_ = mode;
    resetSplitView();
    markDirty();
}

void MainView::chooseDomain(DomainMode mode) {
    if (mode == domainMode_) return;
    domainMode_ = mode;
    resetSplitView();
    markDirty();
}

void MainView::setSearchText(std::string text) {
    if (text == searchText_) return;
    searchText_ = std::move(text);
    const auto settle = anchor_.guarded([text = searchText_](MainView& self) {
        self.debouncedSearchText_ = text;
        if (text.empty()) self.facts_.dropSearchTexts();
        self.resetSplitView();
        self.markDirty();
    });
    searchDebounceTask_ = loop_.after(searchDebounce, [settle] { settle(); });
    markDirty();
}

void MainView::resetSplitView() {
    if (viewMode_ == ViewMode::columns) ++splitViewResetToken_;
}

void MainView::answerAlert(std::size_t button) {
    sections_.answerAlert(button);
}

}  // namespace tarnbeck
