#include <memory>
#include <utility>

#include "MainView.h"
#include "ScannerHarness.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;
using testing::repositoryAt;

constexpr const char* march = "2026-03-01T12:00:00Z";
constexpr const char* april = "2026-04-01T12:00:00Z";

GitHubIssue issueOf(const std::string& updatedAt, const std::string& title = "A bug") {
    return {.title = title, .updatedAt = updatedAt};
}

// With so many issues, dashboards and pull requests, all of them without a date.
struct Amounts {
    int real = 0;
    int dashboards = 0;
    int pullRequests = 0;
};
GitRepository repositoryWith(const std::string& name, const Amounts& amounts) {
    GitRepository repository = repositoryAt("/p/" + name);
    std::vector<GitHubIssue> issues(amounts.real, issueOf(""));
    issues.resize(amounts.real + amounts.dashboards, issueOf("", "Dependency Dashboard"));
    repository.issues = issues;
    repository.pullRequests = std::vector<GitHubPullRequest>(amounts.pullRequests);
    return repository;
}

GitRepository updatedAt(const std::string& name, const std::string& date) {
    GitRepository repository = repositoryAt("/p/" + name);
    repository.issues = {issueOf(date)};
    return repository;
}

GitRepository dirty(const std::string& name) {
    GitRepository repository = repositoryAt("/p/" + name);
    repository.stashCount = 1;
    return repository;
}

GitRepository clean(const std::string& name) {
    return repositoryAt("/p/" + name);
}

std::vector<std::string> sorted(std::vector<GitRepository> repositories, SortMode mode,
                                DomainMode domain = DomainMode::git) {
    std::vector<RepositorySnapshot> repos;
    for (auto& repository : repositories) {
        repos.push_back(std::make_shared<const GitRepository>(std::move(repository)));
    }
    std::vector<std::string> names;
    for (const auto& repo : MainView::filterAndSortRepos({.repos = repos,
                            .domainMode = domain,
                            .filterMode = FilterMode::all,
                            .sortMode = mode},
                                                         NameCollator("en_US"))) {
        names.push_back(repo->name);
    }
    return names;
}

using Comparison = bool (*)(const GitRepository&, const GitRepository&, const NameCollator&);

// -1: the first goes first; 1: the second; 0: neither.
int order(Comparison goesBefore, const GitRepository& first, const GitRepository& second) {
    const NameCollator collator("en_US");
    const bool forward = goesBefore(first, second, collator);
    const bool backward = goesBefore(second, first, collator);
    EXPECT_FALSE(forward && backward);
    return static_cast<int>(backward) - static_cast<int>(forward);
}

std::optional<std::chrono::sys_seconds> latest(const GitRepository& repository) {
    return MainView::latestIssueActivityDate(repository);
}

constexpr std::chrono::sys_seconds noonOf(int month) {
    return std::chrono::sys_days{std::chrono::year{2026} / month / 1} + std::chrono::hours(12);
}

TEST(RepositorySorting_Modes, EachHasItsLabel) {
    EXPECT_EQ(rawValue(SortMode::name), "Name");
    EXPECT_EQ(rawValue(SortMode::cleanFirst), "Clean First");
    EXPECT_EQ(rawValue(SortMode::dirtyFirst), "Dirty First");
    EXPECT_EQ(rawValue(SortMode::issuePriority), "Issue Priority");
    EXPECT_EQ(rawValue(SortMode::mostIssues), "Most Issues");
    EXPECT_EQ(rawValue(SortMode::recentlyUpdated), "Recently Updated");
}

TEST(RepositorySorting_Modes, IssuesOffersItsOwn) {
    EXPECT_THAT(MainView::sortModes(DomainMode::issues),
                ElementsAre(SortMode::issuePriority, SortMode::mostIssues,
                            SortMode::recentlyUpdated, SortMode::name));
}

TEST(RepositorySorting_Modes, OtherDomainsOfferThree) {
    for (const DomainMode domain :
         {DomainMode::git, DomainMode::dependencies, DomainMode::combined}) {
        EXPECT_THAT(MainView::sortModes(domain),
                    ElementsAre(SortMode::name, SortMode::cleanFirst, SortMode::dirtyFirst));
    }
}

TEST(RepositorySorting_Modes, StoredOneIsInUseWhereItIsOffered) {
    EXPECT_EQ(MainView::effectiveSortMode(SortMode::mostIssues, DomainMode::issues),
              SortMode::mostIssues);
    EXPECT_EQ(MainView::effectiveSortMode(SortMode::name, DomainMode::issues), SortMode::name);
    EXPECT_EQ(MainView::effectiveSortMode(SortMode::cleanFirst, DomainMode::combined),
              SortMode::cleanFirst);
}

TEST(RepositorySorting_Modes, DirtyFirstBecomesIssuePriorityInIssues) {
    EXPECT_EQ(MainView::effectiveSortMode(SortMode::dirtyFirst, DomainMode::issues),
              SortMode::issuePriority);
}

TEST(RepositorySorting_Modes, MostIssuesBecomesDirtyFirstElsewhere) {
    for (const DomainMode domain :
         {DomainMode::git, DomainMode::dependencies, DomainMode::combined}) {
        EXPECT_EQ(MainView::effectiveSortMode(SortMode::mostIssues, domain), SortMode::dirtyFirst);
    }
}

TEST(RepositorySorting_Name, UpperAndLowerCaseAreAlike) {
    EXPECT_THAT(sorted({clean("beta"), clean("Alpha"), clean("Gamma")}, SortMode::name),
                ElementsAre("Alpha", "beta", "Gamma"));
}

TEST(RepositorySorting_Name, EqualNamesKeepTheirOrder) {
    EXPECT_THAT(sorted({clean("B"), clean("b"), clean("a"), clean("B")}, SortMode::name),
                ElementsAre("a", "B", "b", "B"));
}

TEST(RepositorySorting_Attention, CleanFirstThenByName) {
    EXPECT_THAT(sorted({dirty("a"), clean("d"), dirty("B"), clean("C")}, SortMode::cleanFirst),
                ElementsAre("C", "d", "a", "B"));
}

TEST(RepositorySorting_Attention, DirtyFirstThenByName) {
    EXPECT_THAT(sorted({clean("d"), dirty("B"), clean("C"), dirty("a")}, SortMode::dirtyFirst),
                ElementsAre("a", "B", "C", "d"));
}

TEST(RepositorySorting_Attention, DomainDecidesWhoNeedsIt) {
    GitRepository withIssue = clean("z");
    withIssue.issues = {issueOf("")};
    EXPECT_THAT(sorted({dirty("a"), withIssue}, SortMode::dirtyFirst, DomainMode::git),
                ElementsAre("a", "z"));
    EXPECT_THAT(sorted({clean("a"), withIssue}, SortMode::dirtyFirst, DomainMode::combined),
                ElementsAre("z", "a"));
}

TEST(RepositorySorting_IssuePriority, PullRequestOutweighsNineIssuesAndDashboards) {
    const GitRepository pulled = repositoryWith("z", {.pullRequests = 1});
    const GitRepository reported = repositoryWith("a", {.real = 9, .dashboards = 9});
    EXPECT_EQ(order(MainView::compareIssuePriority, pulled, reported), -1);
}

TEST(RepositorySorting_IssuePriority, TenIssuesWeighAsMuchAsAPullRequest) {
    const GitRepository pulled = repositoryWith("z", {.pullRequests = 1});
    const GitRepository reported = repositoryWith("a", {.real = 10});
    EXPECT_EQ(order(MainView::compareIssuePriority, reported, pulled), -1);  // by name
}

TEST(RepositorySorting_IssuePriority, DashboardWeighsLeast) {
    EXPECT_EQ(order(MainView::compareIssuePriority, repositoryWith("z", {.real = 1}),
                    repositoryWith("a", {.dashboards = 99})),
              -1);
    EXPECT_EQ(order(MainView::compareIssuePriority, repositoryWith("z", {.dashboards = 1}),
                    repositoryWith("a", {})),
              -1);
}

TEST(RepositorySorting_MostIssues, NineIssuesAndDashboardsOutweighAPullRequest) {
    const GitRepository pulled = repositoryWith("a", {.pullRequests = 1});
    const GitRepository reported = repositoryWith("z", {.real = 9, .dashboards = 9});
    EXPECT_EQ(order(MainView::compareMostIssues, reported, pulled), -1);
}

TEST(RepositorySorting_MostIssues, IssueWeighsAsMuchAsTenPullRequests) {
    EXPECT_EQ(order(MainView::compareMostIssues, repositoryWith("a", {.pullRequests = 10}),
                    repositoryWith("z", {.real = 1})),
              -1);  // by name
    EXPECT_EQ(order(MainView::compareMostIssues, repositoryWith("z", {.pullRequests = 1}),
                    repositoryWith("a", {.dashboards = 9})),
              -1);
}

TEST(RepositorySorting_EqualScores, LaterActivityGoesFirst) {
    for (const Comparison comparison :
         {MainView::compareIssuePriority, MainView::compareMostIssues}) {
        EXPECT_EQ(order(comparison, updatedAt("z", april), updatedAt("a", march)), -1);
    }
}

TEST(RepositorySorting_EqualScores, WithoutDatesByName) {
    for (const Comparison comparison : {MainView::compareIssuePriority, MainView::compareMostIssues,
                                        MainView::compareRecentlyUpdated}) {
        EXPECT_EQ(order(comparison, repositoryWith("alpha", {.real = 1}),
                        repositoryWith("Beta", {.real = 1})),
                  -1);
    }
}

TEST(RepositorySorting_Recent, LaterDateGoesFirst) {
    EXPECT_EQ(order(MainView::compareRecentlyUpdated, updatedAt("z", april), updatedAt("a", march)),
              -1);
}

TEST(RepositorySorting_Recent, DateGoesBeforeNone) {
    EXPECT_EQ(order(MainView::compareRecentlyUpdated, updatedAt("z", march), clean("a")), -1);
}

TEST(RepositorySorting_Recent, EqualDatesGoByNameWhateverTheCase) {
    EXPECT_EQ(order(MainView::compareRecentlyUpdated, updatedAt("alpha", march),
                    updatedAt("BETA", march)),
              -1);
    EXPECT_EQ(order(MainView::compareRecentlyUpdated, updatedAt("ALPHA", march),
                    updatedAt("beta", "2026-03-01T13:00:00+01:00")),
              -1);
    EXPECT_EQ(order(MainView::compareRecentlyUpdated, updatedAt("alpha", march),
                    updatedAt("ALPHA", march)),
              0);
}

TEST(RepositorySorting_Recent, ListsGoTheSameWay) {
    const std::vector<GitRepository> all = {updatedAt("a", march), repositoryWith("b", {.real = 1}),
                                            updatedAt("c", april),
                                            repositoryWith("B", {.real = 2})};
    EXPECT_THAT(sorted(all, SortMode::recentlyUpdated, DomainMode::issues),
                ElementsAre("c", "a", "b", "B"));
    EXPECT_THAT(sorted(all, SortMode::issuePriority, DomainMode::issues),
                ElementsAre("B", "c", "a", "b"));
    EXPECT_THAT(sorted(all, SortMode::mostIssues, DomainMode::issues),
                ElementsAre("B", "c", "a", "b"));
}

TEST(RepositorySorting_ActivityDate, IsThatOfTheLatestIssueOrPullRequest) {
    GitRepository repository = clean("a");
    repository.issues = {issueOf(april), issueOf(march)};
    EXPECT_EQ(latest(repository), noonOf(4));
    repository.pullRequests = {{.updatedAt = "2026-05-01T12:00:00Z"}};
    EXPECT_EQ(latest(repository), noonOf(5));
}

TEST(RepositorySorting_ActivityDate, CreationCountsWhereNoUpdateIsTold) {
    GitRepository repository = clean("a");
    repository.issues = {{.createdAt = march, .updatedAt = std::nullopt}};
    EXPECT_EQ(latest(repository), noonOf(3));
}

TEST(RepositorySorting_ActivityDate, UpdateOutweighsALaterCreation) {
    GitRepository repository = clean("a");
    repository.issues = {{.createdAt = april, .updatedAt = march}};
    EXPECT_EQ(latest(repository), noonOf(3));
}

TEST(RepositorySorting_ActivityDate, EmptyUpdateDoesNotFallBackToTheCreation) {
    GitRepository repository = clean("a");
    repository.issues = {{.createdAt = march, .updatedAt = ""}};
    EXPECT_EQ(latest(repository), std::nullopt);
}

TEST(RepositorySorting_ActivityDate, FractionsOfASecondGiveNoDateButOthersStillCount) {
    GitRepository repository = clean("a");
    repository.issues = {issueOf("2026-05-01T12:00:00.123Z")};
    EXPECT_EQ(latest(repository), std::nullopt);
    repository.issues = {issueOf("2026-05-01T12:00:00.123Z"), issueOf(march)};
    EXPECT_EQ(latest(repository), noonOf(3));
}

TEST(RepositorySorting_ActivityDate, NothingHasNone) {
    EXPECT_EQ(latest(clean("a")), std::nullopt);
}

}  // namespace
}  // namespace tarnbeck
