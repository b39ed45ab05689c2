// Settings that say which repositories there are: adding, removing, discovering.
#include "SettingsFixture.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Paths = std::vector<std::string>;

class SettingsView_Repositories : public testing::SettingsFixture {
  protected:
    void makeWith(Paths repoPaths) {
        harness.options.configuration.repoPaths = std::move(repoPaths);
        make();
    }
    void add(const std::string& path) {
        setText(SettingsControl::customPath, path);
        press(SettingsControl::addCustomPath);
        settle();
    }
    const ConfiguredRepo& row(std::size_t index) const {
        return view->state().configuredRepoPaths.at(index);
    }
};

TEST_F(SettingsView_Repositories, AnAddedPathIsExpandedAndShownLast) {
    makeWith({"/r/z"});
    add("~/a");
    EXPECT_EQ(configuredPaths(), (Paths{"/r/z", inHome("a")}));
    EXPECT_EQ(saved().back().repoPaths, (Paths{"/r/z", inHome("a")}));
}

TEST_F(SettingsView_Repositories, TheFieldIsEmptyAfterAdding) {
    makeWith({});
    add("~/a");
    EXPECT_EQ(view->state().customPath, "");
}

TEST_F(SettingsView_Repositories, WhatStandsThereAlreadyIsNotAddedTwice) {
    makeWith({"~/a"});
    add(inHome("a"));
    EXPECT_EQ(configuredPaths(), Paths{"~/a"});
    EXPECT_THAT(saved(), IsEmpty());
    EXPECT_EQ(view->state().customPath, "");
}

TEST_F(SettingsView_Repositories, AnEmptyFieldAddsNothing) {
    makeWith({});
    add("  ");
    EXPECT_THAT(configuredPaths(), IsEmpty());
    EXPECT_THAT(stored().repoPaths, IsEmpty());
}

TEST_F(SettingsView_Repositories, AddCanBePressedOnceSomethingIsTyped) {
    makeWith({});
    setText(SettingsControl::customPath, "~");
    EXPECT_TRUE(
        std::get<SettingsTextField>(view->content().cards.at(1).rows.at(0)).button.isEnabled);
}

TEST_F(SettingsView_Repositories, ARemovedPathIsGoneEverywhere) {
    makeWith({"~/a", "/r/b"});
    view->press(row(0).removeId);
    EXPECT_EQ(configuredPaths(), Paths{"/r/b"});
    EXPECT_EQ(stored().repoPaths, Paths{"/r/b"});
    EXPECT_EQ(saved().back().repoPaths, Paths{"/r/b"});
}

TEST_F(SettingsView_Repositories, AFullScanFollowsTheRemoval) {
    makeWith({"/r/a", "/r/b"});
    view->press(row(0).removeId);
    settle();
    EXPECT_EQ(harness.scannedPaths, Paths{"/r/b"});
    EXPECT_EQ(harness.names(), Paths{"b"});
}

TEST_F(SettingsView_Repositories, RemovingWatchesAnew) {
    harness.folder.makeFolder("a");
    harness.folder.makeFolder("b");
    makeWith({inHome("a"), inHome("b")});
    harness.scanner->start();
    settle();
    ASSERT_EQ(harness.fileEvents.opened.size(), 1);
    view->press(row(0).removeId);
    settle();
    EXPECT_EQ(harness.fileEvents.opened.back().roots, Paths{inHome("b")});
}

TEST_F(SettingsView_Repositories, APathThatIsNotUtf8CanBeRemoved) {
    makeWith({"/r/\xff\xfe", "/r/b"});
    view->press(row(0).removeId);
    EXPECT_EQ(stored().repoPaths, Paths{"/r/b"});
}

TEST_F(SettingsView_Repositories, ARowKeepsItsIdentityWhenAnotherGoes) {
    makeWith({"/r/a", "/r/b"});
    const ConfiguredRepo second = row(1);
    view->press(row(0).removeId);
    EXPECT_EQ(row(0), second);
    view->syncStateFromConfiguration();
    EXPECT_EQ(row(0), second);
}

TEST_F(SettingsView_Repositories, AButtonThatWasPressedTwiceRemovesOne) {
    makeWith({"/r/a", "/r/b"});
    const SettingsControlId remove = row(0).removeId;
    view->press(remove);
    view->press(remove);
    EXPECT_EQ(configuredPaths(), Paths{"/r/b"});
}

TEST_F(SettingsView_Repositories, LinesArePathsTrimmedAndExpanded) {
    EXPECT_THAT(SettingsView::parseMultilinePaths(" ~/a \n\n\t/b/\t\n \n~\n/b", "/home/u"),
                ElementsAre("/home/u/a", "/b", "/home/u", "/b"));
}

TEST_F(SettingsView_Repositories, ScanningStoresTheTexts) {
    makeWith({});
    setText(SettingsControl::scanDirectories, "  ~/code \n/srv");
    setText(SettingsControl::ignorePaths, "\t~/code/old");
    EXPECT_THAT(saved(), IsEmpty());
    press(SettingsControl::scanForRepos);
    EXPECT_EQ(stored().scanDirectories, (Paths{inHome("code"), "/srv"}));
    EXPECT_EQ(stored().discoveryIgnorePaths, Paths{inHome("code/old")});
    ASSERT_EQ(saved().size(), 1);
    EXPECT_EQ(saved()[0], stored());
}

TEST_F(SettingsView_Repositories, TheFieldKeepsWhatWasTypedUntilTheNextSync) {
    makeWith({});
    setText(SettingsControl::scanDirectories, "  ~/code ");
    press(SettingsControl::scanForRepos);
    settle();
    EXPECT_EQ(view->state().scanDirsText, "  ~/code ");
    view->syncStateFromConfiguration();
    EXPECT_EQ(view->state().scanDirsText, inHome("code"));
}

TEST_F(SettingsView_Repositories, TheSearchRunsOffTheMainThread) {
    harness.folder.makeFolder("code/a/.git");
    makeWith({});
    setText(SettingsControl::scanDirectories, "~/code");
    press(SettingsControl::scanForRepos);
    EXPECT_TRUE(view->state().isDiscoveryScanInProgress);
    EXPECT_FALSE(view->state().hasDiscovered);
    settle();
    EXPECT_FALSE(view->state().isDiscoveryScanInProgress);
    EXPECT_EQ(discoveredNames(), Paths{"a"});
}

TEST_F(SettingsView_Repositories, IgnoredPathsAreNotFound) {
    makeWith({});
    setText(SettingsControl::ignorePaths, "~/code/b");
    discover({"code/a", "code/b"});
    EXPECT_EQ(discoveredNames(), Paths{"a"});
}

TEST_F(SettingsView_Repositories, WhatIsConfiguredIsNotFound) {
    makeWith({"~/code/a", inHome("code/x/../b")});
    discover({"code/a", "code/b", "code/c"});
    EXPECT_EQ(discoveredNames(), Paths{"c"});
}

TEST_F(SettingsView_Repositories, WhatIsConfiguredDuringTheSearchIsNotFound) {
    harness.folder.makeFolder("code/a/.git");
    harness.folder.makeFolder("code/b/.git");
    makeWith({});
    setText(SettingsControl::scanDirectories, "~/code");
    press(SettingsControl::scanForRepos);
    add("~/code/a");
    EXPECT_EQ(discoveredNames(), Paths{"b"});
}

TEST_F(SettingsView_Repositories, OfTwoScansOnlyTheSecondIsShown) {
    harness.folder.makeFolder("one/a/.git");
    harness.folder.makeFolder("two/b/.git");
    makeWith({});
    setText(SettingsControl::scanDirectories, "~/one");
    press(SettingsControl::scanForRepos);
    setText(SettingsControl::scanDirectories, "~/two");
    press(SettingsControl::scanForRepos);
    while (!view->state().hasDiscovered) {
        ASSERT_TRUE(view->state().isDiscoveryScanInProgress);
        ASSERT_TRUE(harness.simulation.loop.runOne() || harness.simulation.queues.runOne());
    }
    EXPECT_EQ(discoveredNames(), Paths{"b"});
    settle();
    EXPECT_EQ(discoveredNames(), Paths{"b"});
}

// The queue hands out its tasks in turn; here the second scan is told before the first.
TEST_F(SettingsView_Repositories, ALateAnswerOfTheFirstScanTouchesNothing) {
    harness.folder.makeFolder("one/a/.git");
    harness.folder.makeFolder("two/b/.git");
    makeWith({});
    setText(SettingsControl::scanDirectories, "~/one");
    press(SettingsControl::scanForRepos);
    while (harness.simulation.queues.runOne()) {
    }
    setText(SettingsControl::scanDirectories, "~/two");
    press(SettingsControl::scanForRepos);
    while (harness.simulation.loop.runOne()) {
    }
    EXPECT_TRUE(view->state().isDiscoveryScanInProgress);
    EXPECT_FALSE(view->state().hasDiscovered);
    EXPECT_THAT(discoveredNames(), IsEmpty());
}

TEST_F(SettingsView_Repositories, AnAnswerForAWindowThatHasGoneIsDropped) {
    makeWith({});
    press(SettingsControl::scanForRepos);
    view.reset();
    settle();
    EXPECT_EQ(timesTold, 1);
}

TEST_F(SettingsView_Repositories, EarlierResultsStayDuringAnotherScan) {
    makeWith({});
    discover({"code/a"});
    press(SettingsControl::scanForRepos);
    EXPECT_EQ(discoveredNames(), Paths{"a"});
}

TEST_F(SettingsView_Repositories, AddSelectedConfiguresAndSorts) {
    makeWith({"/z"});
    discover({"code/a", "code/b", "code/c"});
    tick("c");
    tick("a");
    press(SettingsControl::addSelected);
    EXPECT_EQ(stored().repoPaths, (Paths{"/z", inHome("code/a"), inHome("code/c")}));
    EXPECT_EQ(configuredPaths(), (Paths{inHome("code/a"), inHome("code/c"), "/z"}));
}

TEST_F(SettingsView_Repositories, AfterAddSelectedTheOthersStayUnselected) {
    makeWith({});
    discover({"code/a", "code/b", "code/c"});
    tick("b");
    press(SettingsControl::addSelected);
    EXPECT_EQ(discoveredNames(), (Paths{"a", "c"}));
    EXPECT_FALSE(view->state().hasSelection());
}

TEST_F(SettingsView_Repositories, AddSelectedWithoutASelectionChangesNothing) {
    makeWith({"/z", "/a"});
    discover({"code/a"});
    press(SettingsControl::addSelected);
    EXPECT_EQ(configuredPaths(), (Paths{"/z", "/a"}));
    EXPECT_EQ(discoveredNames(), Paths{"a"});
}

TEST_F(SettingsView_Repositories, IgnoreSelectedAddsToTheIgnoredPaths) {
    makeWith({});
    setText(SettingsControl::ignorePaths, " ~/old \n/x");
    discover({"code/a", "code/b"});
    tick("b");
    press(SettingsControl::ignoreSelected);
    const Paths expected{inHome("old"), "/x", inHome("code/b")};
    EXPECT_EQ(stored().discoveryIgnorePaths, expected);
    EXPECT_EQ(saved().back().discoveryIgnorePaths, expected);
    EXPECT_EQ(view->state().ignorePathsText, inHome("old") + "\n/x\n" + inHome("code/b"));
    EXPECT_EQ(discoveredNames(), Paths{"a"});
}

TEST_F(SettingsView_Repositories, IgnoreSelectedAddsAPathOnce) {
    makeWith({});
    discover({"code/a"});
    setText(SettingsControl::ignorePaths, "~/code/a");
    tick("a");
    press(SettingsControl::ignoreSelected);
    EXPECT_EQ(stored().discoveryIgnorePaths, Paths{inHome("code/a")});
}

TEST_F(SettingsView_Repositories, IgnoreSelectedWithoutASelectionStoresNothing) {
    makeWith({});
    discover({"code/a"});
    const auto before = saved().size();
    setText(SettingsControl::ignorePaths, "/typed");
    press(SettingsControl::ignoreSelected);
    EXPECT_EQ(saved().size(), before);
}

TEST_F(SettingsView_Repositories, IdentitiesAreUniqueThroughout) {
    makeWith({"/r/a", "/r/b"});
    discover({"code/a", "code/b"});
    std::vector<SettingsControlId> ids;
    for (const auto& repo : view->state().configuredRepoPaths) {
        ids.insert(ids.end(), {repo.id, repo.removeId});
    }
    for (const auto& repo : view->state().discoveredRepos) ids.push_back(repo.id);
    std::ranges::sort(ids);
    EXPECT_EQ(std::ranges::adjacent_find(ids), ids.end());
    EXPECT_GE(ids.front(), id(SettingsControl::firstOfRows));
}

TEST_F(SettingsView_Repositories, ATickIsTakenBack) {
    makeWith({});
    discover({"code/a"});
    tick("a");
    view->setOn(view->state().discoveredRepos.at(0).id, false);
    EXPECT_FALSE(view->state().hasSelection());
}

}  // namespace
}  // namespace tarnbeck
