#include "MainView.h"
#include "MainViewHarness.h"
#include "MainViewOutline.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using testing::dirtyRepositoryAt;
using ::testing::ElementsAre;
using testing::gitHubSuccess;
using ::testing::IsEmpty;
using testing::MainViewHarness;
using testing::outline;
using testing::repositoryAt;
using testing::verdict;

std::vector<std::string> paths(const MainViewHarness& harness) {
    return harness.view->visibleRepoPaths();
}

TEST(MainView_Content, BeginsWithTheRepositoriesThatNeedAttentionInColumns) {
    MainViewHarness harness;
    harness.show(
        {dirtyRepositoryAt("/p/beta"), repositoryAt("/p/tidy"), dirtyRepositoryAt("/p/Alpha")});
    EXPECT_EQ(outline(harness.content()),
              "Masonry [list.bullet] (Switch to list view)\n"
              "Scan [arrow.clockwise]\n"
              "Sort [arrow.up.arrow.down]\n"
              "  Name [textformat.abc]\n"
              "  Clean First [checkmark.circle]\n"
              "  Dirty First [exclamationmark.triangle] checkmark\n"
              "Equalize [equal] (Distribute columns equally)\n"
              "Awake [cup.and.saucer.fill] (Keep Mac awake) = Off\n"
              "Settings [gearshape]\n"
              "Filter: Needs, Git\n"
              "search [magnifyingglass] Filter: \"\"\n"
              "--\n"
              "columns\n"
              "  /p/Alpha\n"
              "  /p/beta\n"
              "--\n"
              "* [checkmark.circle.fill] 1 healthy green\n"
              "* [exclamationmark.triangle.fill] 2 need attention orange\n"
              "details\n"
              "[arrow.triangle.branch] Git 2 secondary\n"
              "[exclamationmark.bubble] Issues 0 secondary\n"
              "[shippingbox] Deps 0 secondary\n"
              "trailing\n"
              "backdrop 0.78\n");
}

TEST(MainView_Content, OfTheListInIssues) {
    MainViewHarness harness;
    GitRepository reported = repositoryAt("/p/reported");
    reported.issues = gitHubSuccess({1, 2}).data()->issues;
    GitRepository pulled = repositoryAt("/p/pulled");
    pulled.pullRequests = gitHubSuccess({}, {3}).data()->pullRequests;
    pulled.dependencySummary = verdict(DependencyHealth::checking);
    harness.show({reported, pulled, dirtyRepositoryAt("/p/dirty")});
    harness.act([](MainView& view) {
        view.toggleViewMode();
        view.chooseDomain(DomainMode::issues);
        view.chooseFilter(FilterMode::all);
    });
    EXPECT_EQ(outline(harness.content()),
              "Columns [rectangle.split.3x1] (Switch to column view)\n"
              "Scan [arrow.clockwise]\n"
              "Sort [arrow.up.arrow.down]\n"
              "  Issue Priority [exclamationmark.bubble] checkmark\n"
              "  Most Issues [number.circle]\n"
              "  Recently Updated [clock]\n"
              "  Name [textformat.abc]\n"
              "Awake [cup.and.saucer.fill] (Keep Mac awake) = Off\n"
              "Settings [gearshape]\n"
              "Filter: All, Issues\n"
              "search [magnifyingglass] Filter: \"\"\n"
              "--\n"
              "list\n"
              "  /p/pulled\n"
              "  /p/reported\n"
              "--\n"
              "* [checkmark.circle.fill] 1 healthy green\n"
              "* [exclamationmark.triangle.fill] 2 need attention orange\n"
              "details\n"
              "[arrow.triangle.branch] Git 1 secondary\n"
              "[exclamationmark.bubble] Issues 2 secondary\n"
              "[shippingbox] Deps 1 secondary\n"
              "trailing\n"
              "[] Checking 1 blue\n"
              "backdrop 0.78\n");
}

TEST(MainView_Content, WithoutAnEmbeddedToolbarThereIsNoStrip) {
    MainViewHarness harness({.embedToolbarInContent = false});
    harness.show({});
    EXPECT_FALSE(harness.content().strip);
}

TEST(MainView_Content, PopoverHasABackdropOfItsOwn) {
    MainViewHarness harness({.usesPopoverAppearance = true});
    harness.show({});
    EXPECT_EQ(harness.content().backdropOpacity, 0.55);
    harness.configure([](auto& configuration) { configuration.popoverBackdropOpacity = 0.25; });
    EXPECT_EQ(harness.content().backdropOpacity, 0.25);
}

TEST(MainView_Content, WindowHasTheBackdropOfTheApplication) {
    MainViewHarness harness;
    harness.show({});
    harness.configure([](auto& configuration) { configuration.appBackdropOpacity = 0.5; });
    EXPECT_EQ(harness.content().backdropOpacity, 0.5);
}

TEST(MainView_Empty, NoRepositoriesAreConfigured) {
    MainViewHarness harness;
    harness.show({});
    EXPECT_EQ(outline(harness.area<EmptyState>()),
              "[arrow.triangle.branch] No repositories configured / Open Settings to add "
              "repositories / button Open Settings\n");
}

TEST(MainView_Empty, WhileTheFirstScanRunsThereIsNoMatchInstead) {
    MainViewHarness harness;
    harness.configure([](auto& configuration) { configuration.repoPaths = {"/p/a"}; });
    harness.view->setVisible(true);
    harness.scanner().requestRefresh({});
    harness.settle();
    ASSERT_TRUE(harness.scanner().isScanning());
    EXPECT_EQ(outline(harness.area<EmptyResult>()), "[checkmark.circle.fill] No repos found\n");
}

TEST(MainView_Empty, EachDomainHasItsWordsForNoMatch) {
    MainViewHarness harness;
    harness.show({repositoryAt("/p/tidy")});
    const auto text = [&](DomainMode domain) {
        harness.act([&](MainView& view) { view.chooseDomain(domain); });
        return harness.area<EmptyResult>().text;
    };
    EXPECT_EQ(text(DomainMode::issues), "No repos with open issues or PRs found");
    EXPECT_EQ(text(DomainMode::dependencies), "No repos with dependency updates found");
    EXPECT_EQ(text(DomainMode::combined), "No repos with action needed found");
    EXPECT_EQ(text(DomainMode::git), "No repos found");
}

TEST(MainView_Empty, NoMatchHasACheckMarkInColumnsOnly) {
    MainViewHarness harness;
    harness.show({repositoryAt("/p/tidy")});
    EXPECT_EQ(harness.area<EmptyResult>().symbol, "checkmark.circle.fill");
    harness.act([](MainView& view) { view.toggleViewMode(); });
    EXPECT_EQ(harness.area<EmptyResult>().symbol, "");
}

// A pass over the dependencies of three repositories that stands at the first.
class MainView_WhileDependenciesAreChecked : public ::testing::Test {
  protected:
    MainView_WhileDependenciesAreChecked() {
        harness.scanners.answersAtOnce = true;
        harness.scanners.answer = [](const std::string& path) {
            GitRepository repository = repositoryAt(path);
            repository.dependencySummary = verdict(DependencyHealth::upToDate);
            return repository;
        };
        harness.configure([](auto& configuration) {
            configuration.repoPaths = {"/p/a", "/p/b", "/p/c"};
        });
        harness.view->setVisible(true);
        harness.scanner().requestRefresh({.refreshDependencies = true});
        auto& simulation = harness.scanners.simulation;
        while (!harness.scanner().state().dependencyScanInProgress &&
               (simulation.loop.runOne() || simulation.queues.runOne())) {
        }
        while (simulation.loop.runOne()) {
        }
    }

    std::string emptyResultIn(DomainMode domain) {
        harness.view->chooseDomain(domain);
        while (harness.scanners.simulation.loop.runOne()) {
        }
        return outline(harness.area<EmptyResult>());
    }

    MainViewHarness harness;
};

TEST_F(MainView_WhileDependenciesAreChecked, NoMatchTellsHowFarItIs) {
    EXPECT_EQ(emptyResultIn(DomainMode::dependencies), "[] loading Checking dependencies… (0/3)\n");
    EXPECT_EQ(emptyResultIn(DomainMode::combined), "[] loading Checking dependencies… (0/3)\n");
}

TEST_F(MainView_WhileDependenciesAreChecked, OtherDomainsHaveTheirOwnWords) {
    EXPECT_EQ(emptyResultIn(DomainMode::issues),
              "[checkmark.circle.fill] No repos with open issues or PRs found\n");
}

TEST(MainView_Status, CountsLookAtAllRepositoriesAndNotAtTheFilteredOnes) {
    MainViewHarness harness;
    harness.show({dirtyRepositoryAt("/p/a"), repositoryAt("/p/b"), repositoryAt("/p/c")});
    harness.act([](MainView& view) { view.setSearchText("nowhere"); });
    harness.advance(1s);
    EXPECT_TRUE(std::holds_alternative<EmptyResult>(harness.content().area));
    EXPECT_EQ(harness.content().statusBar.pills[0].text, "2 healthy");
    EXPECT_EQ(harness.content().statusBar.pills[1].text, "1 need attention");
}

TEST(MainView_Status, HealthIsThatOfTheDomain) {
    MainViewHarness harness;
    harness.show({dirtyRepositoryAt("/p/a")});
    EXPECT_EQ(harness.content().statusBar.pills[0].text, "0 healthy");
    harness.act([](MainView& view) { view.chooseDomain(DomainMode::issues); });
    EXPECT_EQ(harness.content().statusBar.pills[0].text, "1 healthy");
    EXPECT_EQ(harness.content().statusBar.detailPills[0].text, "Git 1");
}

TEST(MainView_Status, CountsDependenciesThatNeedAnInstallOrAreBeingChecked) {
    MainViewHarness harness;
    std::vector<GitRepository> repositories;
    for (const auto health : {DependencyHealth::syncNeeded, DependencyHealth::error,
                              DependencyHealth::checking, DependencyHealth::upToDate}) {
        repositories.push_back(repositoryAt("/p/" + std::string(rawValue(health))));
        repositories.back().dependencySummary = verdict(health);
    }
    harness.show(repositories);
    EXPECT_EQ(harness.content().statusBar.detailPills[2].text, "Deps 3 · Sync 1");
    EXPECT_EQ(harness.content().statusBar.trailingDetails[0].text, "Checking 1");
}

TEST(MainView_Status, AgeIsWorkedOutAnewOnceAMinuteWhileTheViewCanBeSeen) {
    MainViewHarness harness;
    harness.scanners.refresh();
    harness.view->setVisible(true);
    const auto age = [&] { return harness.content().statusBar.trailingDetails.back().text; };
    EXPECT_EQ(age(), "Last scan: 0s ago");
    harness.advance(59s);
    EXPECT_EQ(age(), "Last scan: 0s ago");
    harness.advance(1s);
    EXPECT_EQ(age(), "Last scan: 1m ago");
    harness.view->setVisible(false);
    harness.advance(10min);
    EXPECT_EQ(age(), "Last scan: 1m ago");
    harness.view->setVisible(true);
    EXPECT_EQ(age(), "Last scan: 11m ago");
}

TEST(MainView_Status, AgeIsWorkedOutAnewOnAChange) {
    MainViewHarness harness;
    harness.scanners.refresh();
    harness.view->setVisible(true);
    harness.advance(30s);
    harness.act([](MainView& view) { view.equalize(); });
    EXPECT_EQ(harness.content().statusBar.trailingDetails.back().text, "Last scan: 30s ago");
}

TEST(MainView_Sort, ChoiceIsKeptWhileTheDomainLacksIt) {
    MainViewHarness harness;
    harness.show({repositoryAt("/p/a")});
    const auto checked = [&] {
        for (const auto& entry : harness.content().strip->sortMenu) {
            if (entry.isChecked) return entry.mode;
        }
        ADD_FAILURE() << "none is in use";
        return SortMode::name;
    };
    harness.act([](MainView& view) { view.chooseSort(SortMode::cleanFirst); });
    EXPECT_EQ(checked(), SortMode::cleanFirst);
    harness.act([](MainView& view) { view.chooseDomain(DomainMode::issues); });
    EXPECT_EQ(checked(), SortMode::issuePriority);
    EXPECT_EQ(harness.view->effectiveSortMode(), SortMode::issuePriority);
    harness.act([](MainView& view) { view.chooseDomain(DomainMode::git); });
    EXPECT_EQ(checked(), SortMode::cleanFirst);
}

TEST(MainView_Sort, OrderFollowsTheChoice) {
    MainViewHarness harness;
    harness.show({dirtyRepositoryAt("/p/b"), repositoryAt("/p/a"), repositoryAt("/p/c")});
    harness.act([](MainView& view) { view.chooseFilter(FilterMode::all); });
    EXPECT_THAT(paths(harness), ElementsAre("/p/b", "/p/a", "/p/c"));
    harness.act([](MainView& view) { view.chooseSort(SortMode::cleanFirst); });
    EXPECT_THAT(paths(harness), ElementsAre("/p/a", "/p/c", "/p/b"));
}

TEST(MainView_Search, FieldShowsTheTextAtOnceAndTheListFollowsAfter200Milliseconds) {
    MainViewHarness harness;
    harness.show({dirtyRepositoryAt("/p/alpha"), dirtyRepositoryAt("/p/beta")});
    harness.act([](MainView& view) { view.setSearchText("alp"); });
    EXPECT_EQ(harness.content().strip->searchText, "alp");
    harness.advance(199ms);
    EXPECT_THAT(paths(harness), ElementsAre("/p/alpha", "/p/beta"));
    harness.advance(1ms);
    EXPECT_THAT(paths(harness), ElementsAre("/p/alpha"));
}

TEST(MainView_Search, QuickTypingFiltersOnceByTheLastText) {
    MainViewHarness harness;
    harness.show({dirtyRepositoryAt("/p/alpha"), dirtyRepositoryAt("/p/beta")});
    const auto token = harness.content().splitViewResetToken;
    for (const char* text : {"b", "be", "bet", "beta"}) {
        harness.act([&](MainView& view) { view.setSearchText(text); });
        harness.advance(150ms);
    }
    EXPECT_THAT(paths(harness), ElementsAre("/p/alpha", "/p/beta"));
    EXPECT_EQ(harness.content().splitViewResetToken, token);
    harness.changes = 0;
    harness.advance(1s);
    EXPECT_THAT(paths(harness), ElementsAre("/p/beta"));
    EXPECT_EQ(harness.changes, 1);
}

TEST(MainView_Search, SectionsMarkWhatTheListIsFilteredBy) {
    MainViewHarness harness;
    harness.show({dirtyRepositoryAt("/p/alpha")});
    harness.act([](MainView& view) { view.setSearchText("ALPHA"); });
    EXPECT_FALSE(harness.view->section("/p/alpha")->header.isNameHighlighted);
    harness.advance(200ms);
    EXPECT_TRUE(harness.view->section("/p/alpha")->header.isNameHighlighted);
}

TEST(MainView_Search, ClearingShowsAllAgain) {
    MainViewHarness harness;
    harness.show({dirtyRepositoryAt("/p/alpha"), dirtyRepositoryAt("/p/beta")});
    harness.act([](MainView& view) { view.setSearchText("beta"); });
    harness.advance(1s);
    EXPECT_EQ(harness.content().strip->clearSearch->help, "Clear filter");
    harness.act([](MainView& view) { view.setSearchText(""); });
    EXPECT_FALSE(harness.content().strip->clearSearch);
    harness.advance(1s);
    EXPECT_THAT(paths(harness), ElementsAre("/p/alpha", "/p/beta"));
}

TEST(MainView_Actions, ScanAsksForAllByHand) {
    MainViewHarness harness;
    const std::string path = harness.scanners.folder / "a";
    harness.scanners.folder.makeFolder("a/.git");
    harness.configure([&](auto& configuration) { configuration.repoPaths = {path}; });
    harness.scanners.answersAtOnce = true;
    harness.act([](MainView& view) { view.scan(); });
    EXPECT_THAT(harness.scanners.scannedPaths, ElementsAre(path));
    EXPECT_THAT(harness.scanners.issueScans,
                ElementsAre(std::pair(path, GitHubIssueRefreshPolicy::forceRefresh)));
    ASSERT_EQ(harness.scanners.gitInvocations.size(), 1);
    EXPECT_EQ(harness.scanners.gitInvocations[0].logicalArgs[0], "fetch");
    EXPECT_EQ(harness.scanner().dependencyScanGeneration(), 1);
}

TEST(MainView_Actions, SettingsAreOpenedByWhoIsToldTo) {
    MainViewHarness harness;
    harness.view->openSettings();
    EXPECT_EQ(harness.settingsOpened, 1);
}

TEST(MainView_Actions, AwakeKeepsTheMachineAwakeUntilItIsAskedAgain) {
    MainViewHarness harness;
    harness.show({});
    harness.act([](MainView& view) { view.toggleAwake(); });
    EXPECT_THAT(harness.launcher.started, ElementsAre(ElementsAre("-i", "-m", "-s")));
    EXPECT_TRUE(harness.content().strip->awake.isSelected);
    EXPECT_EQ(harness.content().strip->awake.accessibleValue, "On");
    harness.act([](MainView& view) { view.toggleAwake(); });
    EXPECT_FALSE(harness.content().strip->awake.isSelected);
    EXPECT_EQ(harness.content().strip->awake.help, "Keep Mac awake");
}

TEST(MainView_Actions, FailureToStayAwakeIsToldInTheStrip) {
    MainViewHarness harness;
    harness.show({});
    harness.launcher.failure = "No such file or directory";
    harness.act([](MainView& view) { view.toggleAwake(); });
    EXPECT_EQ(harness.content().strip->awakeFailure, "No such file or directory");
    EXPECT_FALSE(harness.content().strip->awake.isSelected);
}

}  // namespace
}  // namespace tarnbeck
