// The one screen of the application, without a toolkit: it holds the view state, observes the
// scanner, and says what is to be drawn. Changes are gathered: however many there are in a turn of
// the main loop, the content is worked out anew once. Main thread.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "CaffeinateController.h"
#include "MainViewContent.h"
#include "NameCollator.h"
#include "ObserverList.h"
#include "RepeatingTimer.h"
#include "RepositoryFacts.h"
#include "RepositoryScanner.h"
#include "RepositorySections.h"
#include "WeakAnchor.h"

namespace tarnbeck {

class MainView {
  public:
    struct Services {
        RepositoryScanner& scanner;
        system_awake::CaffeinateController& caffeinateController;
        const NameCollator& collator;
        RepositorySections::Services sections;  // `callbacks` are filled in by the view
        std::function<void()> onOpenSettings;
    };
    struct Host {
        bool embedToolbarInContent = true;
        bool usesPopoverAppearance = false;
    };
    MainView(Services services, Host host);
    ~MainView();
    MainView(const MainView&) = delete;
    MainView& operator=(const MainView&) = delete;

    // --- What is shown ---

    // Empty until the view is first put on the screen; while it is not there, it stays as it was.
    const MainViewContent& content() const { return content_; }
    // Told after the content has changed.
    using Observers = ObserverList<>;
    [[nodiscard]] Observers::Token observe(Observers::Observer observer);

    // The section of a path that `content` names; worked out when asked for, and kept until it
    // changes. Null for other paths.
    std::shared_ptr<const SectionContent> section(const std::string& path);
    // Its height, without making its rows.
    double sectionHeight(const std::string& path);

    // The view was put on the screen, or taken from it: ages are worked out anew once a minute only
    // while it can be seen.
    void setVisible(bool visible);

    // --- What the user does ---

    void toggleViewMode();
    void scan();
    void chooseSort(SortMode mode);
    void equalize();
    void toggleAwake();
    void openSettings();
    void chooseFilter(FilterMode mode);
    void chooseDomain(DomainMode mode);
    void setSearchText(std::string text);
    void toggleSection(const std::string& path);
    // Does what `kind` asks of the row, or of the header where `rowId` is empty; see
    // `RepositorySections::perform`.
    struct Request {
        const std::string& path;
        const std::string& rowId;
        RowActionKind kind;
        std::size_t occurrence = 0;
    };
    void perform(const Request& request);
    void answerAlert(std::size_t button);

    // --- Which repositories, in which order (MainView+Filtering.cpp). Pure. ---

    // The scanner's repositories as they are filtered and sorted in `content`, and their paths.
    const std::vector<RepositorySnapshot>& filteredRepos() const { return filteredRepos_; }
    const std::vector<std::string>& visibleRepoPaths() const { return visibleRepoPaths_; }

    struct FilterAndSort {
        const std::vector<RepositorySnapshot>& repos;
        DomainMode domainMode = DomainMode::git;
        FilterMode filterMode = FilterMode::dirty;
        std::string_view searchText;
        SortMode sortMode = SortMode::dirtyFirst;
    };
    static std::vector<RepositorySnapshot> filterAndSortRepos(const FilterAndSort& by,
                                                              const NameCollator& collator);
    // The same, with what is known of the repositories already, and learnt of them now.
    static std::vector<RepositorySnapshot> filterAndSortRepos(const FilterAndSort& by,
                                                              const NameCollator& collator,
                                                              RepositoryFactsCache& facts);
    static bool repoNeedsAttention(const GitRepository& repo, DomainMode domainMode);
    static bool repoMatchesSearch(const GitRepository& repo, std::string_view searchText);
    // The issues in two parts: the lists of updates that bots keep, and all others.
    static std::vector<GitHubIssue> realIssueItems(const GitRepository& repo);
    static std::vector<GitHubIssue> dashboardIssueItems(const GitRepository& repo);
    // Whether the first goes before the second.
    static bool compareIssuePriority(const GitRepository& first, const GitRepository& second,
                                     const NameCollator& collator);
    static bool compareMostIssues(const GitRepository& first, const GitRepository& second,
                                  const NameCollator& collator);
    static bool compareRecentlyUpdated(const GitRepository& first, const GitRepository& second,
                                       const NameCollator& collator);
    static std::optional<std::chrono::sys_seconds> latestIssueActivityDate(
        const GitRepository& repo);
    // Those that a domain offers, in the order of the menu.
    static std::span<const SortMode> sortModes(DomainMode domainMode);
    // The stored one where the domain offers it, otherwise the domain's own.
    static SortMode effectiveSortMode(SortMode stored, DomainMode domainMode);
    SortMode effectiveSortMode() const { return effectiveSortMode(sortMode_, domainMode_); }

  private:
    // What is known of a repository's section.
    struct Section {
        RepositorySnapshot repository;
        bool isChanged = true;        // since `revision` was given
        bool isShown = false;         // in `content_`
        std::uint64_t revision = 0;   // 0: it was never shown
        std::uint64_t lastFlush = 0;  // that found the repository
        SectionFlags flags;
        std::shared_ptr<const SectionContent> content;
        std::optional<double> height;
    };

    RepositorySections::Services withCallbacks(RepositorySections::Services services);
    void sectionChanged(const std::string& path);

    void markDirty();
    void flush();
    void publish(MainViewContent content);
    void takeRepositories();
    void takeRepository(const RepositorySnapshot& repository);
    void forgetGoneRepositories();
    void filterRepos();
    void renewSections();
    void renewSection(Section& section);
    bool isOpen(const std::string& path, bool needsAttention) const;
    SectionFlags flagsOf(const GitRepository& repository, bool needsAttention) const;
    Section* shownSection(const std::string& path);
    SectionInput inputOf(const Section& section);
    void retire(std::shared_ptr<const void> unused);
    void freeRetired();

    MainViewContent makeContent();
    ControlStrip makeStrip() const;
    std::variant<EmptyState, EmptyResult, SectionList> makeArea() const;
    EmptyResult emptyResult() const;
    StatusBar makeStatusBar();
    bool showDependencyDetails() const;
    void resetSplitView();

    RepositoryScanner& scanner_;
    system_awake::CaffeinateController& caffeinateController_;
    const NameCollator& collator_;
    MainLoop& loop_;
    WorkQueues& queues_;
    const std::function<void()> onOpenSettings_;
    const Host host_;

    std::string searchText_;
    std::string debouncedSearchText_;
    Timer searchDebounceTask_;
    DomainMode domainMode_ = DomainMode::git;
    FilterMode filterMode_ = FilterMode::dirty;
    SortMode sortMode_ = SortMode::dirtyFirst;
    std::unordered_map<std::string, bool> expandState_;  // by path; what the user chose
    ViewMode viewMode_ = ViewMode::columns;
    std::uint64_t splitViewResetToken_ = 0;

    bool isVisible_ = false;
    bool isDirty_ = true;
    bool isFlushPosted_ = false;
    std::uint64_t flushCount_ = 0;
    std::uint64_t lastRevision_ = 0;
    std::optional<RepeatingTimer> ageTimer_;
    RepositoryFactsCache facts_;
    std::vector<RepositorySnapshot> filteredRepos_;
    std::vector<std::string> visibleRepoPaths_;
    std::unordered_map<std::string, Section> sectionsByPath_;
    std::vector<std::shared_ptr<const void>> retired_;  // to be freed away from this thread
    MainViewContent content_;
    Observers observers_;
    RepositorySections sections_;
    RepositoryScanner::Observers::Token scannerObservation_;
    std::shared_ptr<void> caffeinateObservation_;
    WeakAnchor<MainView> anchor_{*this};
};

}  // namespace tarnbeck
