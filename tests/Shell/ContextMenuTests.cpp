#include "ShellHarness.h"

namespace tarnbeck {
namespace {

using enum AppConfiguration::AppMode;
using testing::dirtyRepositoryAt;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::repositoryAt;
using testing::ShellHarness;
using ::testing::SizeIs;

// "[x] Title (key)", "- Title" for what can't be chosen, "---" for a separator.
std::string outline(const MenuItem& item) {
    if (item.isSeparator) return "---";
    std::string text = item.isEnabled ? "" : "- ";
    if (item.isChecked) text += *item.isChecked ? "[x] " : "[ ] ";
    text += item.title;
    return item.key.empty() ? text : text + " (" + item.key + ")";
}

class ContextMenu : public ::testing::Test {
  protected:
    ContextMenu() { shell.launch(); }

    const std::vector<std::string>& open() {
        shell.desktop.clickWith(ClickEvent{.kind = ClickKind::rightMouseUp});
        rows.clear();
        for (const MenuItem& item : shell.desktop.menu) rows.push_back(outline(item));
        shell.takeEvents();
        return rows;
    }
    // Opens it and chooses the row of this title.
    void choose(const std::string& title) {
        open();
        const auto found = std::ranges::find(shell.desktop.menu, title, &MenuItem::title);
        ASSERT_NE(found, shell.desktop.menu.end());
        shell.desktop.choose(static_cast<std::size_t>(found - shell.desktop.menu.begin()));
    }

    ShellHarness shell{menuBarOnly};
    std::vector<std::string> rows;
};

TEST_F(ContextMenu, WithoutRepositoriesSaysSo) {
    EXPECT_THAT(open(), ElementsAre("- No repos configured", "---", "Scan Now (r)", "Settings… (,)",
                                    "---", "[ ] Keep Mac Awake", "[x] Show Dirty Count in Menu Bar",
                                    "---", "Quit (q)"));
}

TEST_F(ContextMenu, WithCleanRepositoriesCountsThem) {
    shell.show({repositoryAt("/r/a"), repositoryAt("/r/b")});
    EXPECT_THAT(open(), ElementsAre("- 2/2 repos clean", "---", "Scan Now (r)", "Settings… (,)",
                                    "---", "[ ] Keep Mac Awake", "[x] Show Dirty Count in Menu Bar",
                                    "---", "Quit (q)"));
}

TEST_F(ContextMenu, NamesDirtyRepositoriesInTheirOrder) {
    shell.show({dirtyRepositoryAt("/r/z"), repositoryAt("/r/b"), dirtyRepositoryAt("/r/a")});
    EXPECT_THAT(open(), ElementsAre("- 1/3 repos clean", "---", "- z", "- a", "---", "Scan Now (r)",
                                    "Settings… (,)", "---", "[ ] Keep Mac Awake",
                                    "[x] Show Dirty Count in Menu Bar", "---", "Quit (q)"));
}

TEST_F(ContextMenu, NamesNoMoreThanTenAndSaysNothingOfTheRest) {
    std::vector<GitRepository> repositories;
    for (int index = 0; index < 14; ++index) {
        repositories.push_back(dirtyRepositoryAt("/r/" + std::to_string(100 + index)));
    }
    shell.show(std::move(repositories));
    open();
    EXPECT_EQ(rows.at(0), "- 0/14 repos clean");
    EXPECT_EQ(rows.at(2), "- 100");
    EXPECT_EQ(rows.at(11), "- 109");
    EXPECT_EQ(rows.at(12), "---");
    EXPECT_THAT(rows, SizeIs(2 + 10 + 8));
}

TEST_F(ContextMenu, IsMadeAnewForEachClick) {
    open();
    shell.show({repositoryAt("/r/a")});
    EXPECT_EQ(open().at(0), "- 1/1 repos clean");
}

TEST_F(ContextMenu, ScanNowAsksForEverythingButRemotes) {
    shell.app->scanner().addRepo("/r/a");
    shell.scanner.answersAtOnce = true;
    shell.scanner.simulation.runUntilIdle();
    while (!shell.scanner.waiting.empty()) shell.scanner.answerNext();
    const int dependencies = shell.app->scanner().dependencyScanGeneration();
    const int issues = shell.app->scanner().issueScanGeneration();
    shell.scanner.forget();
    choose("Scan Now");
    shell.runUntilIdle();
    EXPECT_THAT(shell.scanner.scannedPaths, ElementsAre("/r/a"));
    EXPECT_EQ(shell.app->scanner().dependencyScanGeneration(), dependencies + 1);
    EXPECT_EQ(shell.app->scanner().issueScanGeneration(), issues + 1);
    EXPECT_THAT(shell.scanner.issueScans,
                ElementsAre(::testing::Pair("/r/a", GitHubIssueRefreshPolicy::forceRefresh)));
    EXPECT_THAT(shell.scanner.gitInvocations, IsEmpty());
}

TEST_F(ContextMenu, SettingsOpensTheirWindow) {
    choose("Settings…");
    EXPECT_THAT(shell.takeEvents(), ElementsAre("settings view", "front Settings", "activate"));
}

TEST_F(ContextMenu, KeepMacAwakeStartsAndStopsWithoutTouchingTheSetting) {
    choose("Keep Mac Awake");
    EXPECT_THAT(shell.takeEvents(), ElementsAre("awake -i -m -s for 4711"));
    EXPECT_EQ(open().at(5), "[x] Keep Mac Awake");
    choose("Keep Mac Awake");
    EXPECT_THAT(shell.takeEvents(), ElementsAre("asleep"));
    EXPECT_FALSE(shell.app->scanner().configuration().keepAwakeOnLaunch);
    EXPECT_THAT(shell.saved, IsEmpty());
}

TEST_F(ContextMenu, ShowDirtyCountIsInvertedSavedAndSeenAtOnce) {
    shell.show({dirtyRepositoryAt("/r/a")});
    choose("Show Dirty Count in Menu Bar");
    EXPECT_FALSE(shell.app->scanner().configuration().showDirtyCountInMenuBar);
    ASSERT_THAT(shell.saved, SizeIs(1));
    EXPECT_FALSE(shell.saved[0].showDirtyCountInMenuBar);
    EXPECT_EQ(shell.images().back().toolTip, "Tarnbeck");
    choose("Show Dirty Count in Menu Bar");
    EXPECT_TRUE(shell.app->scanner().configuration().showDirtyCountInMenuBar);
    EXPECT_EQ(shell.images().back().toolTip, "Tarnbeck · 1 dirty repo");
}

TEST_F(ContextMenu, QuitEndsTheApplicationByTheUsualPath) {
    choose("Quit");
    EXPECT_THAT(shell.takeEvents(), ElementsAre("terminate"));
}

TEST_F(ContextMenu, RowsThatOnlyTellSomethingDoNothing) {
    shell.show({dirtyRepositoryAt("/r/a")});
    open();
    for (const std::size_t row : {0, 1, 2, 3}) shell.desktop.choose(row);
    shell.runUntilIdle();
    EXPECT_THAT(shell.takeEvents(), IsEmpty());
}

}  // namespace
}  // namespace tarnbeck
