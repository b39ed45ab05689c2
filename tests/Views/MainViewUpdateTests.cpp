#include "MainViewHarness.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using testing::dirtyRepositoryAt;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::MainViewHarness;
using testing::repositoryAt;

std::uint64_t token(const MainViewHarness& harness) {
    return harness.content().splitViewResetToken;
}

// The names in the order in which an issue scan would look at the repositories.
std::vector<std::string> scanOrder(MainViewHarness& harness) {
    std::vector<std::string> names;
    for (const auto& repository :
         harness.scanner().prioritizedRepositories(harness.scanner().repositories())) {
        names.push_back(repository->name);
    }
    return names;
}

TEST(MainView_Flush, AnyNumberOfChangesInATurnAreOneChangeOfTheContent) {
    MainViewHarness harness;
    harness.show({dirtyRepositoryAt("/p/a")});
    harness.changes = 0;
    harness.act([](MainView& view) {
        view.chooseDomain(DomainMode::combined);
        view.chooseFilter(FilterMode::all);
        view.toggleViewMode();
        view.setSearchText("a");
    });
    EXPECT_EQ(harness.changes, 1);
}

TEST(MainView_Flush, ContentThatStaysTheSameIsNotTold) {
    MainViewHarness harness;
    harness.show({dirtyRepositoryAt("/p/a")});
    harness.changes = 0;
    harness.configure([](auto&) {});
    harness.act([](MainView& view) { view.chooseSort(SortMode::dirtyFirst); });
    EXPECT_EQ(harness.changes, 0);
}

TEST(MainView_Flush, NothingIsWorkedOutBeforeTheViewIsOnTheScreen) {
    MainViewHarness harness;
    harness.scanner().setRepositories(
        {std::make_shared<const GitRepository>(dirtyRepositoryAt("/p/a"))});
    harness.act([](MainView& view) { view.chooseFilter(FilterMode::all); });
    EXPECT_EQ(harness.changes, 0);
    EXPECT_THAT(harness.view->visibleRepoPaths(), IsEmpty());
    EXPECT_EQ(harness.view->section("/p/a"), nullptr);
}

TEST(MainView_Flush, BecomingVisibleShowsWhatIsAtOnce) {
    MainViewHarness harness;
    harness.show({dirtyRepositoryAt("/p/a")});
    harness.view->setVisible(false);
    harness.changes = 0;
    harness.scanner().setRepositories(
        {std::make_shared<const GitRepository>(dirtyRepositoryAt("/p/b"))});
    harness.settle();
    EXPECT_EQ(harness.changes, 0);
    harness.view->setVisible(true);
    EXPECT_EQ(harness.changes, 1);
    EXPECT_THAT(harness.view->visibleRepoPaths(), ElementsAre("/p/b"));
}

TEST(MainView_Flush, HiddenViewHasNoTimer) {
    MainViewHarness harness;
    harness.show({});
    const auto timers = harness.scanners.simulation.loop.pendingTimers();
    harness.view->setVisible(false);
    EXPECT_EQ(harness.scanners.simulation.loop.pendingTimers(), timers - 1);
}

TEST(MainView_Flush, ViewThatGoesWhileOneIsDueIsNotMissed) {
    MainViewHarness harness;
    harness.show({dirtyRepositoryAt("/p/a")});
    harness.view->equalize();
    harness.view->setSearchText("a");
    harness.view.reset();
    harness.advance(1h);
    EXPECT_EQ(harness.scanners.simulation.loop.pendingTimers(), 0);
}

TEST(MainView_Flush, ReplacedSnapshotsAreFreedInTheBackground) {
    MainViewHarness harness;
    auto former = std::make_shared<const GitRepository>(dirtyRepositoryAt("/p/a"));
    const std::weak_ptr<const GitRepository> watched = former;
    harness.scanner().setRepositories({std::move(former)});
    harness.view->setVisible(true);
    harness.settle();
    harness.scanner().setRepositories({});
    while (harness.scanners.simulation.loop.runOne()) {
    }
    EXPECT_FALSE(watched.expired());
    harness.settle();
    EXPECT_TRUE(watched.expired());
}

TEST(MainView_Priorities, IssueScansLookFirstAtWhatIsOnTheScreen) {
    MainViewHarness harness;
    harness.show({repositoryAt("/p/a"), repositoryAt("/p/b"), dirtyRepositoryAt("/p/c")});
    EXPECT_THAT(scanOrder(harness), ElementsAre("c", "a", "b"));
    harness.act([](MainView& view) { view.chooseFilter(FilterMode::all); });
    harness.act([](MainView& view) { view.setSearchText("b"); });
    harness.advance(1s);
    EXPECT_THAT(scanOrder(harness), ElementsAre("b", "a", "c"));
}

TEST(MainView_Priorities, AreWrittenAnewWhenTheViewAppears) {
    MainViewHarness harness;
    harness.show({repositoryAt("/p/a"), dirtyRepositoryAt("/p/b")});
    harness.view->setVisible(false);
    harness.scanner().setPrioritizedIssueRepoPaths({"/p/a"});
    harness.view->setVisible(true);
    EXPECT_THAT(scanOrder(harness), ElementsAre("b", "a"));
}

TEST(MainView_Priorities, AreLeftAloneWhileThePathsStay) {
    MainViewHarness harness;
    harness.show({repositoryAt("/p/a"), dirtyRepositoryAt("/p/b")});
    harness.scanner().setPrioritizedIssueRepoPaths({"/p/a"});
    harness.act([](MainView& view) { view.equalize(); });
    EXPECT_THAT(scanOrder(harness), ElementsAre("a", "b"));
}

// Two repositories that need attention in every domain of git, in the given layout.
class MainView_SplitView : public ::testing::TestWithParam<ViewMode> {
  protected:
    MainView_SplitView() {
        harness.show({dirtyRepositoryAt("/p/a"), dirtyRepositoryAt("/p/b")});
        if (GetParam() == ViewMode::list) {
            harness.act([](MainView& view) { view.toggleViewMode(); });
        }
        before = token(harness);
    }
    // The columns, and they alone, are told to go back to the first.
    void expectResetInColumnsOnly() const {
        EXPECT_EQ(token(harness) != before, GetParam() == ViewMode::columns);
    }

    MainViewHarness harness;
    std::uint64_t before = 0;
};
INSTANTIATE_TEST_SUITE_P(InBothLayouts, MainView_SplitView,
                         ::testing::Values(ViewMode::list, ViewMode::columns));

TEST_P(MainView_SplitView, FilterLeadsBackToTheFirstColumn) {
    harness.act([](MainView& view) { view.chooseFilter(FilterMode::all); });
    expectResetInColumnsOnly();
}

TEST_P(MainView_SplitView, DomainLeadsBackToTheFirstColumn) {
    harness.act([](MainView& view) { view.chooseDomain(DomainMode::combined); });
    expectResetInColumnsOnly();
}

TEST_P(MainView_SplitView, OtherPathsLeadBackToTheFirstColumn) {
    harness.show({dirtyRepositoryAt("/p/a")});
    expectResetInColumnsOnly();
}

TEST_P(MainView_SplitView, AnotherOrderLeadsBackToTheFirstColumn) {
    harness.show({dirtyRepositoryAt("/p/b"), repositoryAt("/p/a")});
    expectResetInColumnsOnly();
}

TEST_P(MainView_SplitView, SearchLeadsBackToTheFirstColumnWhenItIsTakenUp) {
    harness.act([](MainView& view) { view.setSearchText("p"); });
    EXPECT_EQ(token(harness), before);
    harness.advance(200ms);
    expectResetInColumnsOnly();
}

TEST_P(MainView_SplitView, ChoosingWhatIsChosenLeadsNowhere) {
    harness.act([](MainView& view) {
        view.chooseFilter(FilterMode::dirty);
        view.chooseDomain(DomainMode::git);
        view.setSearchText("");
    });
    harness.advance(1s);
    EXPECT_EQ(token(harness), before);
}

TEST_P(MainView_SplitView, NewContentOfTheSameRepositoriesLeadsNowhere) {
    GitRepository changed = dirtyRepositoryAt("/p/a");
    changed.tags = {"v1"};
    harness.show({changed, dirtyRepositoryAt("/p/b")});
    EXPECT_EQ(token(harness), before);
}

TEST_P(MainView_SplitView, EqualizeLeadsBackEachTime) {
    harness.act([](MainView& view) { view.equalize(); });
    const auto first = token(harness);
    harness.act([](MainView& view) { view.equalize(); });
    EXPECT_NE(first, before);
    EXPECT_NE(token(harness), first);
}

}  // namespace
}  // namespace tarnbeck
