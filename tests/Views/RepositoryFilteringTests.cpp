#include <memory>
#include <utility>

#include "MainView.h"
#include "ScannerHarness.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::repositoryAt;
using testing::verdict;

GitRepository named(const std::string& name) {
    return repositoryAt("/p/" + name);
}

GitHubIssue issueTitled(const std::string& title, const std::string& updatedAt = "") {
    return {.title = title, .updatedAt = updatedAt};
}

std::vector<GitHubIssue> issues(int real, int dashboards = 0) {
    std::vector<GitHubIssue> items(real, issueTitled("A bug"));
    items.resize(real + dashboards, issueTitled("Dependency Dashboard"));
    return items;
}

std::vector<GitHubPullRequest> pullRequests(int count) {
    return std::vector<GitHubPullRequest>(count, {.title = "A change"});
}

bool needs(const GitRepository& repository, DomainMode domain) {
    return MainView::repoNeedsAttention(repository, domain);
}

bool matches(const GitRepository& repository, std::string_view text) {
    return MainView::repoMatchesSearch(repository, text);
}

struct Controls {
    DomainMode domain = DomainMode::git;
    FilterMode filter = FilterMode::all;
    std::string search;
    SortMode sort = SortMode::name;
};

// The names of what is shown, in order.
std::vector<std::string> shown(std::vector<GitRepository> repositories, const Controls& controls) {
    std::vector<RepositorySnapshot> repos;
    for (auto& repository : repositories) {
        repos.push_back(std::make_shared<const GitRepository>(std::move(repository)));
    }
    std::vector<std::string> names;
    for (const auto& repo : MainView::filterAndSortRepos({.repos = repos,
                            .domainMode = controls.domain,
                            .filterMode = controls.filter,
                            .searchText = controls.search,
                            .sortMode = controls.sort},
                                                         NameCollator("en_US"))) {
        names.push_back(repo->name);
    }
    return names;
}

TEST(RepositoryFiltering_Issues, DashboardIsToldFromRealOnesWhateverItsCaseAndBlanks) {
    GitRepository repository = named("a");
    repository.issues = {issueTitled("First"), issueTitled(" \n dependency DASHBOARD\t"),
                         issueTitled("Second")};
    EXPECT_THAT(MainView::realIssueItems(repository),
                ElementsAre(issueTitled("First"), issueTitled("Second")));
    EXPECT_THAT(MainView::dashboardIssueItems(repository),
                ElementsAre(issueTitled(" \n dependency DASHBOARD\t")));
}

TEST(RepositoryFiltering_Issues, TitleThatOnlyBeginsLikeTheDashboardIsReal) {
    GitRepository repository = named("a");
    repository.issues = {issueTitled("Dependency Dashboard is broken"), issueTitled("Dependency")};
    EXPECT_EQ(MainView::realIssueItems(repository).size(), 2);
    EXPECT_THAT(MainView::dashboardIssueItems(repository), IsEmpty());
}

TEST(RepositoryFiltering_Git, TidyRepositoryNeedsNoAttention) {
    EXPECT_FALSE(needs(named("a"), DomainMode::git));
}

TEST(RepositoryFiltering_Git, ConfigurationIssueNeedsAttention) {
    GitRepository repository = named("a");
    repository.gitConfigurationIssue = GitConfigurationIssue::coreBareWorktreeMismatch;
    EXPECT_TRUE(needs(repository, DomainMode::git));
}

TEST(RepositoryFiltering_Git, WhatIsNotCleanNeedsAttention) {
    GitRepository repository = named("a");
    repository.stashCount = 1;
    EXPECT_TRUE(needs(repository, DomainMode::git));
}

TEST(RepositoryFiltering_Git, DistanceFromTheUpstreamNeedsAttention) {
    GitRepository repository = named("a");
    for (const GitSyncStatus& status :
         {GitSyncStatus(GitSyncStatus::Ahead{"origin/main", 1}),
          GitSyncStatus(GitSyncStatus::Behind{"origin/main", 1}),
          GitSyncStatus(GitSyncStatus::Diverged{"origin/main", 1, 1})}) {
        repository.syncStatus = status;
        EXPECT_TRUE(needs(repository, DomainMode::git)) << status.caseName();
    }
}

TEST(RepositoryFiltering_Git, NoDistanceAndNoUpstreamNeedNone) {
    GitRepository repository = named("a");
    for (const GitSyncStatus& status :
         {GitSyncStatus(GitSyncStatus::UpToDate{"origin/main"}),
          GitSyncStatus(GitSyncStatus::NoUpstream{}), GitSyncStatus(GitSyncStatus::Unknown{})}) {
        repository.syncStatus = status;
        EXPECT_FALSE(needs(repository, DomainMode::git)) << status.caseName();
    }
}

TEST(RepositoryFiltering_Dependencies, VerdictDecides) {
    GitRepository repository = named("a");
    const auto needsWith = [&](DependencyHealth health) {
        repository.dependencySummary = verdict(health);
        return needs(repository, DomainMode::dependencies);
    };
    EXPECT_TRUE(needsWith(DependencyHealth::error));
    EXPECT_TRUE(needsWith(DependencyHealth::syncNeeded));
    EXPECT_TRUE(needsWith(DependencyHealth::checking));
    EXPECT_FALSE(needsWith(DependencyHealth::upToDate));
    EXPECT_FALSE(needsWith(DependencyHealth::unknown));
    repository.dependencySummary = DependencySummary::notApplicable;
    EXPECT_FALSE(needs(repository, DomainMode::dependencies));
}

TEST(RepositoryFiltering_Dependencies, UpdateOfAnyKindNeedsAttention) {
    GitRepository repository = named("a");
    for (const auto& [type, name] : rawValues(DependencyUpdateType{})) {
        repository.dependencySummary = {.ecosystems = {{.status = DependencyHealth::upToDate,
                                                        .updates = {{.updateType = type}}}}};
        EXPECT_TRUE(needs(repository, DomainMode::dependencies)) << name;
    }
}

TEST(RepositoryFiltering_Dependencies, CheckingAloneNeedsAttentionThereAndInCombined) {
    GitRepository repository = named("a");
    repository.dependencySummary = verdict(DependencyHealth::checking);
    EXPECT_TRUE(needs(repository, DomainMode::dependencies));
    EXPECT_TRUE(needs(repository, DomainMode::combined));
    EXPECT_FALSE(needs(repository, DomainMode::git));
    EXPECT_FALSE(needs(repository, DomainMode::issues));
}

TEST(RepositoryFiltering_Attention, IssuesLooksAtRealIssuesAndPullRequests) {
    GitRepository repository = named("a");
    EXPECT_FALSE(needs(repository, DomainMode::issues));
    repository.issues = issues(1);
    EXPECT_TRUE(needs(repository, DomainMode::issues));
    repository.issues = {};
    repository.pullRequests = pullRequests(1);
    EXPECT_TRUE(needs(repository, DomainMode::issues));
}

TEST(RepositoryFiltering_Attention, CombinedLooksAtEverything) {
    EXPECT_FALSE(needs(named("a"), DomainMode::combined));
    GitRepository dirty = named("a");
    dirty.stashCount = 1;
    GitRepository withIssue = named("a");
    withIssue.issues = issues(1);
    GitRepository withPullRequest = named("a");
    withPullRequest.pullRequests = pullRequests(1);
    for (const auto& repository : {dirty, withIssue, withPullRequest}) {
        EXPECT_TRUE(needs(repository, DomainMode::combined));
    }
}

TEST(RepositoryFiltering_Attention, LoneDashboardCountsInCombinedOnly) {
    GitRepository repository = named("a");
    repository.issues = issues(0, 1);
    EXPECT_TRUE(needs(repository, DomainMode::combined));
    EXPECT_FALSE(needs(repository, DomainMode::issues));
}

TEST(RepositoryFiltering_Search, FindsInEachOfTheTexts) {
    GitRepository repository = named("needle-repo");
    EXPECT_TRUE(matches(repository, "NEEDLE"));
    const auto findsIn = [](auto change) {
        GitRepository other = named("a");
        change(other);
        return matches(other, "needle");
    };
    EXPECT_TRUE(findsIn([](auto& repo) { repo.branches = {{.name = "fix/Needle"}}; }));
    EXPECT_TRUE(findsIn([](auto& repo) { repo.remoteBranches = {"origin/Needle"}; }));
    EXPECT_TRUE(findsIn([](auto& repo) { repo.worktrees = {{.path = "/trees/Needle"}}; }));
    EXPECT_TRUE(
        findsIn([](auto& repo) { repo.worktrees = {{.path = "/trees/x", .branch = "Needle"}}; }));
    EXPECT_TRUE(findsIn([](auto& repo) { repo.tags = {"v1", "Needle-2"}; }));
    EXPECT_TRUE(findsIn([](auto& repo) {
        repo.uncommittedChanges = {{.status = "M", .filePath = "src/Needle.cpp"}};
    }));
    EXPECT_TRUE(findsIn([](auto& repo) { repo.issues = {{.title = "A Needle"}}; }));
    EXPECT_TRUE(findsIn([](auto& repo) { repo.issues = {{.labels = {"bug", "Needle"}}}; }));
    EXPECT_TRUE(findsIn([](auto& repo) { repo.pullRequests = {{.title = "A Needle"}}; }));
    EXPECT_TRUE(findsIn([](auto& repo) { repo.pullRequests = {{.labels = {"Needle"}}}; }));
    EXPECT_TRUE(findsIn([](auto& repo) {
        repo.dependencySummary = {.ecosystems = {{.updates = {{.package = "@x/Needle"}}}}};
    }));
}

TEST(RepositoryFiltering_Search, FindsDashboardsToo) {
    GitRepository repository = named("a");
    repository.issues = issues(0, 1);
    EXPECT_TRUE(matches(repository, "dashboard"));
}

TEST(RepositoryFiltering_Search, LooksAtNothingElse) {
    GitRepository repository = repositoryAt("/needle/a");
    repository.currentBranch = "needle";
    repository.gitHubOwnerRepos = {"needle/needle"};
    repository.worktrees = {{.path = "/w", .commitHash = "needle"}};
    repository.stashes = {{.reference = "stash@{0}", .subject = "needle"}};
    repository.issues = {{.number = 4711, .author = "needle", .url = "needle"}};
    repository.pullRequests = {{.number = 4711, .author = "needle", .url = "needle"}};
    repository.dependencySummary = {
        .ecosystems = {{.project = "needle", .manager = "needle", .message = "needle"}}};
    EXPECT_FALSE(matches(repository, "needle"));
    EXPECT_FALSE(matches(repository, "4711"));
}

TEST(RepositoryFiltering_Search, NothingIsFoundAcrossTwoTexts) {
    GitRepository repository = named("one");
    repository.branches = {{.name = "two"}};
    EXPECT_FALSE(matches(repository, "onetwo"));
    EXPECT_FALSE(matches(repository, "one two"));
    EXPECT_FALSE(matches(repository, "one\ntwo"));
}

TEST(RepositoryFiltering_Search, TextIsNotTrimmed) {
    EXPECT_THAT(shown({named("a b"), named("ab")}, {.search = " "}), ElementsAre("a b"));
    EXPECT_THAT(shown({named("a b"), named("ab")}, {.search = "  "}), IsEmpty());
}

TEST(RepositoryFiltering_Search, EmptyTextKeepsAll) {
    EXPECT_THAT(shown({named("b"), named("a")}, {.search = ""}), ElementsAre("a", "b"));
}

TEST(RepositoryFiltering_Filter, AllKeepsAllInTheDomainsOfGitAndDependencies) {
    for (const DomainMode domain :
         {DomainMode::git, DomainMode::dependencies, DomainMode::combined}) {
        EXPECT_THAT(shown({named("a"), named("b")}, {.domain = domain}), ElementsAre("a", "b"));
    }
}

TEST(RepositoryFiltering_Filter, AllInIssuesKeepsThoseThatHaveAny) {
    GitRepository withDashboard = named("dashboard");
    withDashboard.issues = issues(0, 1);
    GitRepository withPullRequest = named("pull");
    withPullRequest.pullRequests = pullRequests(1);
    EXPECT_THAT(
        shown({named("none"), withDashboard, withPullRequest}, {.domain = DomainMode::issues}),
        ElementsAre("dashboard", "pull"));
}

TEST(RepositoryFiltering_Filter, NeedsKeepsThoseThatNeedAttentionInTheDomain) {
    GitRepository dirty = named("dirty");
    dirty.stashCount = 1;
    GitRepository withIssue = named("issue");
    withIssue.issues = issues(1);
    const std::vector<GitRepository> all = {named("none"), dirty, withIssue};
    const auto needy = [&](DomainMode domain) {
        return shown(all, {.domain = domain, .filter = FilterMode::dirty});
    };
    EXPECT_THAT(needy(DomainMode::git), ElementsAre("dirty"));
    EXPECT_THAT(needy(DomainMode::issues), ElementsAre("issue"));
    EXPECT_THAT(needy(DomainMode::dependencies), IsEmpty());
    EXPECT_THAT(needy(DomainMode::combined), ElementsAre("dirty", "issue"));
}

TEST(RepositoryFiltering_Filter, LoneDashboardIsListedWhereItCounts) {
    GitRepository repository = named("a");
    repository.issues = {issueTitled("  DEPENDENCY dashboard ")};
    const auto isListed = [&](DomainMode domain, FilterMode filter) {
        return !shown({repository}, {.domain = domain, .filter = filter}).empty();
    };
    EXPECT_FALSE(isListed(DomainMode::issues, FilterMode::dirty));
    EXPECT_TRUE(isListed(DomainMode::issues, FilterMode::all));
    EXPECT_TRUE(isListed(DomainMode::combined, FilterMode::dirty));
}

TEST(RepositoryFiltering_Filter, FilterAndSearchBothApply) {
    GitRepository dirty = named("alpha");
    dirty.stashCount = 1;
    GitRepository other = named("beta");
    other.stashCount = 1;
    EXPECT_THAT(
        shown({dirty, other, named("alphabet")}, {.filter = FilterMode::dirty, .search = "ALPHA"}),
        ElementsAre("alpha"));
}

TEST(RepositoryFiltering_Facts, AreThoseOfTheSnapshotAndNotOfItsPath) {
    RepositoryFactsCache cache;
    const NameCollator collator("en_US");
    GitRepository repository = named("a");
    const auto shownWith = [&](const GitRepository& value) {
        const std::vector<RepositorySnapshot> repos = {
            std::make_shared<const GitRepository>(value)};
        return MainView::filterAndSortRepos({.repos = repos}, collator, cache).size();
    };
    for (int round = 0; round < 8; ++round) {  // the next may lie where the last one was
        repository.stashCount = round % 2;
        EXPECT_EQ(shownWith(repository), round % 2);
    }
}

TEST(RepositoryFiltering_Facts, SearchIsAnsweredAnewForAnotherText) {
    RepositoryFactsCache cache;
    const NameCollator collator("en_US");
    const std::vector<RepositorySnapshot> repos = {std::make_shared<GitRepository>(named("alpha"))};
    const auto isShown = [&](std::string_view text) {
        return !MainView::filterAndSortRepos(
                    {.repos = repos, .filterMode = FilterMode::all, .searchText = text}, collator,
                    cache)
                    .empty();
    };
    EXPECT_TRUE(isShown("alp"));
    EXPECT_FALSE(isShown("alps"));
    cache.dropSearchTexts();
    EXPECT_TRUE(isShown("PHA"));
}

TEST(RepositoryFiltering_Facts, KeepNoSnapshotAlive) {
    RepositoryFactsCache cache;
    auto repository = std::make_shared<const GitRepository>(named("a"));
    cache.of(repository).needsGitAttention();
    const std::weak_ptr<const GitRepository> weak = repository;
    repository.reset();
    EXPECT_TRUE(weak.expired());
    cache.dropReplaced(0);
}

}  // namespace
}  // namespace tarnbeck
