#include <algorithm>

#include "MainViewHarness.h"
#include "RepositorySectionLayout.h"

namespace tarnbeck {
namespace {

using ::testing::Contains;
using testing::dirtyRepositoryAt;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::MainViewHarness;
using ::testing::Not;
using testing::repositoryAt;
using testing::verdict;

// All repositories in the list.
class MainView_Sections : public ::testing::Test {
  protected:
    void showInList(std::vector<GitRepository> repositories) {
        harness.show(std::move(repositories));
        harness.act([](MainView& view) {
            view.toggleViewMode();
            view.chooseFilter(FilterMode::all);
        });
    }
    const SectionHeader& header(const std::string& path) {
        held = harness.view->section(path);
        return held->header;
    }
    std::vector<Row::Kind> kinds(const std::string& path) {
        std::vector<Row::Kind> result;
        for (const Row& row : harness.view->section(path)->rows) result.push_back(row.kind);
        return result;
    }
    // The row of the one file that is changed.
    std::string changeRow(const std::string& path) {
        for (const Row::Kind kind : {Row::Kind::branch, Row::Kind::fileChange}) {
            const auto section = harness.view->section(path);
            const auto row = std::ranges::find(section->rows, kind, &Row::kind);
            if (row == section->rows.end()) return "none";
            if (kind == Row::Kind::fileChange) return row->id;
            perform(path, RowActionKind::toggle, row->id);
        }
        return "none";
    }
    void perform(const std::string& path, RowActionKind kind, const std::string& rowId = "") {
        harness.act(
            [&](MainView& view) { view.perform({.path = path, .rowId = rowId, .kind = kind}); });
    }

    MainViewHarness harness;
    std::shared_ptr<const SectionContent> held;
};

TEST_F(MainView_Sections, OpenByThemselvesWhileTheirRepositoryNeedsAttention) {
    showInList({dirtyRepositoryAt("/p/dirty"), repositoryAt("/p/tidy")});
    EXPECT_TRUE(header("/p/dirty").isExpanded);
    EXPECT_FALSE(header("/p/tidy").isExpanded);
    harness.show({repositoryAt("/p/dirty"), dirtyRepositoryAt("/p/tidy")});
    EXPECT_FALSE(header("/p/dirty").isExpanded);
    EXPECT_TRUE(header("/p/tidy").isExpanded);
}

TEST_F(MainView_Sections, AttentionIsThatOfTheDomain) {
    showInList({dirtyRepositoryAt("/p/dirty")});
    harness.act([](MainView& view) { view.chooseDomain(DomainMode::dependencies); });
    EXPECT_FALSE(header("/p/dirty").isExpanded);
}

TEST_F(MainView_Sections, StayAsTheUserPutThem) {
    showInList({dirtyRepositoryAt("/p/a"), repositoryAt("/p/b")});
    harness.act([](MainView& view) {
        view.toggleSection("/p/a");
        view.toggleSection("/p/b");
    });
    EXPECT_FALSE(header("/p/a").isExpanded);
    EXPECT_TRUE(header("/p/b").isExpanded);
    harness.show({repositoryAt("/p/a"), dirtyRepositoryAt("/p/b")});
    EXPECT_FALSE(header("/p/a").isExpanded);
    EXPECT_TRUE(header("/p/b").isExpanded);
}

TEST_F(MainView_Sections, TwoTogglesInOneTurnLeaveThemAsTheyWere) {
    showInList({dirtyRepositoryAt("/p/a")});
    harness.act([](MainView& view) {
        view.toggleSection("/p/a");
        view.toggleSection("/p/a");
    });
    EXPECT_TRUE(header("/p/a").isExpanded);
}

TEST_F(MainView_Sections, NewViewForgetsWhatWasToggled) {
    showInList({dirtyRepositoryAt("/p/a")});
    harness.act([](MainView& view) { view.toggleSection("/p/a"); });
    harness.makeView();
    showInList({dirtyRepositoryAt("/p/a")});
    EXPECT_TRUE(header("/p/a").isExpanded);
}

TEST_F(MainView_Sections, HeaderAsksForTheToggle) {
    showInList({dirtyRepositoryAt("/p/a")});
    perform("/p/a", RowActionKind::toggle);
    EXPECT_FALSE(header("/p/a").isExpanded);
}

TEST_F(MainView_Sections, ColumnsAreAlwaysOpenAndCannotBeClosed) {
    harness.show({dirtyRepositoryAt("/p/a"), repositoryAt("/p/b")});
    harness.act([](MainView& view) { view.chooseFilter(FilterMode::all); });
    harness.act([](MainView& view) { view.toggleSection("/p/b"); });
    for (const char* path : {"/p/a", "/p/b"}) {
        EXPECT_TRUE(header(path).isExpanded);
        EXPECT_FALSE(header(path).canCollapse);
    }
    harness.act([](MainView& view) { view.toggleViewMode(); });
    EXPECT_TRUE(header("/p/a").canCollapse);
    EXPECT_FALSE(header("/p/b").isExpanded);  // what was toggled in a column is nothing
}

TEST_F(MainView_Sections, DomainDecidesWhichDetailsTheyShow) {
    GitRepository repository = dirtyRepositoryAt("/p/a");
    repository.issues = {{.title = "A bug"}};
    repository.dependencySummary = verdict(DependencyHealth::error);
    harness.show({repository});
    const auto badges = [&](DomainMode domain) {
        harness.act([&](MainView& view) { view.chooseDomain(domain); });
        std::vector<std::string> titles;
        for (const auto& badge : header("/p/a").badges) titles.emplace_back(badge.title);
        return titles;
    };
    EXPECT_THAT(badges(DomainMode::combined), ElementsAre("Git", "Deps"));
    EXPECT_THAT(kinds("/p/a"), Contains(Row::Kind::branch));
    EXPECT_THAT(badges(DomainMode::issues), IsEmpty());
    EXPECT_THAT(kinds("/p/a"), Not(Contains(Row::Kind::branch)));
    EXPECT_THAT(badges(DomainMode::dependencies), ElementsAre("Deps"));
    EXPECT_THAT(badges(DomainMode::git), ElementsAre("Git"));
}

TEST_F(MainView_Sections, ConfigurationDecidesWhatTheyLeaveOut) {
    GitRepository repository = dirtyRepositoryAt("/p/a");
    repository.tags = {"v1"};
    repository.remoteBranches = {"origin/topic"};
    harness.show({repository});
    const auto subsections = [&] {
        std::vector<std::string> titles;
        for (const Row& row : harness.view->section("/p/a")->rows) {
            if (row.kind == Row::Kind::subsection) titles.push_back(row.title);
        }
        return titles;
    };
    const auto all = subsections();
    EXPECT_THAT(all, Contains("Tags"));
    harness.configure([](auto& configuration) { configuration.showTags = false; });
    EXPECT_THAT(subsections(), Not(Contains("Tags")));
    EXPECT_EQ(subsections().size(), all.size() - 1);
    harness.configure([](auto& configuration) { configuration.showRemoteBranches = false; });
    EXPECT_EQ(subsections().size(), all.size() - 2);
    harness.configure([](auto& configuration) { configuration.showIssues = false; });
    EXPECT_LT(subsections().size(), all.size() - 2);
}

TEST_F(MainView_Sections, PathsThatAreNotShownHaveNone) {
    harness.show({dirtyRepositoryAt("/p/a"), repositoryAt("/p/tidy")});
    EXPECT_EQ(harness.view->section("/p/tidy"), nullptr);
    EXPECT_EQ(harness.view->section("/elsewhere"), nullptr);
    EXPECT_EQ(harness.view->sectionHeight("/p/tidy"), 0);
    perform("/p/tidy", RowActionKind::refresh);
    EXPECT_THAT(harness.scanners.scannedPaths, IsEmpty());
}

TEST_F(MainView_Sections, AreKeptUntilTheyChange) {
    showInList({dirtyRepositoryAt("/p/a"), dirtyRepositoryAt("/p/b")});
    const auto first = harness.view->section("/p/a");
    EXPECT_EQ(harness.view->section("/p/a"), first);
    harness.act([](MainView& view) { view.toggleSection("/p/b"); });
    EXPECT_EQ(harness.view->section("/p/a"), first);
    harness.act([](MainView& view) { view.toggleSection("/p/a"); });
    EXPECT_NE(harness.view->section("/p/a"), first);
}

TEST_F(MainView_Sections, OneThatChangedLeavesTheOthersAsTheyWere) {
    showInList({dirtyRepositoryAt("/p/a"), dirtyRepositoryAt("/p/b")});
    const auto before = harness.revisions();
    harness.act([](MainView& view) { view.toggleSection("/p/b"); });
    const auto after = harness.revisions();
    EXPECT_EQ(after.at("/p/a"), before.at("/p/a"));
    EXPECT_NE(after.at("/p/b"), before.at("/p/b"));
}

TEST_F(MainView_Sections, NewSnapshotOfOneChangesItAlone) {
    showInList({dirtyRepositoryAt("/p/a"), dirtyRepositoryAt("/p/b")});
    const auto before = harness.revisions();
    harness.scanners.answersAtOnce = true;
    harness.scanner().refreshGitForRepo("/p/b");
    harness.settle();
    const auto after = harness.revisions();
    EXPECT_EQ(after.at("/p/a"), before.at("/p/a"));
    EXPECT_NE(after.at("/p/b"), before.at("/p/b"));
    EXPECT_FALSE(header("/p/b").isExpanded);  // it is tidy now
}

TEST_F(MainView_Sections, ReloadIsShownInTheOneThatReloads) {
    showInList({dirtyRepositoryAt("/p/a"), dirtyRepositoryAt("/p/b")});
    const auto before = harness.revisions();
    harness.scanner().refreshGitForRepo("/p/b");
    harness.settle();
    EXPECT_EQ(harness.revisions().at("/p/a"), before.at("/p/a"));
    EXPECT_TRUE(header("/p/b").actions.front().isInProgress);
    EXPECT_FALSE(header("/p/a").actions.front().isInProgress);
}

TEST_F(MainView_Sections, SubsectionThatIsToggledChangesItsSection) {
    showInList({dirtyRepositoryAt("/p/a"), dirtyRepositoryAt("/p/b")});
    const auto before = harness.revisions();
    const double height = harness.view->sectionHeight("/p/a");
    const std::string row = harness.view->section("/p/a")->rows.front().id;
    perform("/p/a", RowActionKind::toggle, row);
    EXPECT_NE(harness.revisions().at("/p/a"), before.at("/p/a"));
    EXPECT_EQ(harness.revisions().at("/p/b"), before.at("/p/b"));
    EXPECT_LT(harness.view->sectionHeight("/p/a"), height);
}

TEST_F(MainView_Sections, HeightIsThatOfTheRows) {
    showInList({dirtyRepositoryAt("/p/a"), repositoryAt("/p/tidy")});
    EXPECT_EQ(harness.view->sectionHeight("/p/a"),
              RepositorySectionLayout::sectionHeight(kinds("/p/a")));
    EXPECT_EQ(harness.view->sectionHeight("/p/tidy"), RepositorySectionLayout::headerHeight);
}

TEST_F(MainView_Sections, HeaderRefreshAsksForWhatTheDomainIsAbout) {
    harness.scanners.answersAtOnce = true;
    showInList({dirtyRepositoryAt("/p/a")});
    perform("/p/a", RowActionKind::refresh);
    EXPECT_THAT(harness.scanners.scannedPaths, ElementsAre("/p/a"));
    EXPECT_THAT(harness.scanners.issueScans, IsEmpty());
    harness.act([](MainView& view) { view.chooseDomain(DomainMode::combined); });
    perform("/p/a", RowActionKind::refresh);
    EXPECT_THAT(harness.scanners.scannedPaths, ElementsAre("/p/a", "/p/a"));
    EXPECT_THAT(harness.scanners.issueScans,
                ElementsAre(std::pair("/p/a", GitHubIssueRefreshPolicy::forceRefresh)));
    EXPECT_THAT(harness.scanners.dependencyScans, ElementsAre(std::pair("/p/a", true)));
}

TEST_F(MainView_Sections, SyncIsAskedOfTheScanner) {
    GitRepository behind = repositoryAt("/p/a");
    behind.syncStatus = GitSyncStatus::Behind{"origin/main", 1};
    showInList({behind});
    harness.scanners.answersAtOnce = true;
    perform("/p/a", RowActionKind::sync);
    EXPECT_FALSE(harness.scanners.gitInvocations.empty());
}

TEST_F(MainView_Sections, CopyingIsToldByAToastThatGoes) {
    showInList({dirtyRepositoryAt("/p/a")});
    perform("/p/a", RowActionKind::copy, changeRow("/p/a"));
    EXPECT_TRUE(harness.content().toast.isVisible);
    EXPECT_EQ(harness.content().toast.message, "File path copied");
    harness.advance(std::chrono::seconds(2));
    EXPECT_FALSE(harness.content().toast.isVisible);
}

TEST_F(MainView_Sections, QuestionIsAskedAndAnswered) {
    showInList({dirtyRepositoryAt("/p/a")});
    perform("/p/a", RowActionKind::discard, changeRow("/p/a"));
    ASSERT_TRUE(harness.content().alert);
    EXPECT_EQ(harness.content().alert->title, "Discard changes?");
    const auto& buttons = harness.content().alert->buttons;
    const auto cancel =
        std::ranges::find(buttons, ViewAlert::Role::cancel, &ViewAlert::Button::role);
    harness.act([index = static_cast<std::size_t>(cancel - buttons.begin())](MainView& view) {
        view.answerAlert(index);
    });
    EXPECT_FALSE(harness.content().alert);
}

}  // namespace
}  // namespace tarnbeck
