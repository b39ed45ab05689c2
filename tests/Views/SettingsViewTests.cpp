// Settings that are written through: toggles, pickers, sliders.
#include <chrono>
#include <cmath>

#include "SettingsFixture.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using Property = RepositoryScanner::Property;

class SettingsViews : public testing::SettingsFixture {
  protected:
    void setOn(SettingsControl control, bool isOn) { view->setOn(id(control), isOn); }
    void drag(SettingsControl slider, double value) { view->setValue(id(slider), value); }
};

TEST_F(SettingsViews, AToggleIsStoredAndSavedAtOnce) {
    make();
    setOn(SettingsControl::showTags, false);
    EXPECT_FALSE(stored().showTags);
    ASSERT_EQ(saved().size(), 1);
    EXPECT_FALSE(saved()[0].showTags);
}

TEST_F(SettingsViews, EachToggleChangesItsOwnSetting) {
    make();
    AppConfiguration expected = stored();
    setOn(SettingsControl::showRemoteBranches, false);
    expected.showRemoteBranches = false;
    EXPECT_EQ(stored(), expected);
    setOn(SettingsControl::showIssues, false);
    expected.showIssues = false;
    EXPECT_EQ(stored(), expected);
    setOn(SettingsControl::keepAwakeOnLaunch, false);
    expected.keepAwakeOnLaunch = false;
    EXPECT_EQ(stored(), expected);
    setOn(SettingsControl::showTags, false);
    expected.showTags = false;
    EXPECT_EQ(stored(), expected);
}

TEST_F(SettingsViews, AToggleThatWasTurnedShowsIt) {
    make().selectPane(SettingsPane::display);
    setOn(SettingsControl::showTags, false);
    EXPECT_FALSE(std::get<SettingsToggle>(view->content().cards.at(0).rows.at(1)).isOn);
}

TEST_F(SettingsViews, ObserversAreToldOfAChange) {
    make();
    setOn(SettingsControl::showTags, false);
    EXPECT_EQ(timesTold, 1);
}

TEST_F(SettingsViews, AnotherSettingThatChangedMeanwhileStays) {
    make();
    AppConfiguration elsewhere = stored();
    elsewhere.runnerNamePrefix = "otter";
    harness.scanner->setConfiguration(elsewhere);
    setOn(SettingsControl::showTags, false);
    EXPECT_EQ(saved().back().runnerNamePrefix, "otter");
}

TEST_F(SettingsViews, TurningIssuesOnAsksForThem) {
    harness.options.configuration.showIssues = false;
    make();
    harness.scanner->setRepositories(
        {std::make_shared<const GitRepository>(testing::repositoryAt("/r/a"))});
    setOn(SettingsControl::showIssues, true);
    settle();
    EXPECT_EQ(harness.issueScans.size(), 1);
}

TEST_F(SettingsViews, TurningIssuesOffEndsTheirPeriodicRefresh) {
    make();
    harness.scanner->startPeriodicIssueRefresh();
    harness.scanner->setRepositories(
        {std::make_shared<const GitRepository>(testing::repositoryAt("/r/a"))});
    setOn(SettingsControl::showIssues, false);
    harness.simulation.advance(1h);
    EXPECT_TRUE(harness.issueScans.empty());
}

TEST_F(SettingsViews, TurningTagsAsksNobodyForIssues) {
    make();
    harness.scanner->setRepositories(
        {std::make_shared<const GitRepository>(testing::repositoryAt("/r/a"))});
    setOn(SettingsControl::showTags, false);
    settle();
    EXPECT_TRUE(harness.issueScans.empty());
}

TEST_F(SettingsViews, EachIntervalIsStoredInMinutes) {
    make();
    std::vector<std::int64_t> minutes;
    for (std::size_t option = 0; option < 5; ++option) {
        view->choose(id(SettingsControl::scanInterval), option);
        minutes.push_back(saved().back().scanIntervalMinutes);
    }
    EXPECT_EQ(minutes, (std::vector<std::int64_t>{0, 5, 15, 30, 60}));
}

TEST_F(SettingsViews, AnotherIntervalCountsFromNow) {
    harness.options.configuration.repoPaths = {"/r/a"};
    make();
    harness.scanner->startPeriodicScan();
    harness.simulation.advance(20min);
    view->choose(id(SettingsControl::scanInterval), 1);
    harness.simulation.advance(5min - 1s);
    EXPECT_TRUE(harness.scannedPaths.empty());
    harness.simulation.advance(1s);
    EXPECT_EQ(harness.scannedPaths.size(), 1);
}

TEST_F(SettingsViews, WithTheIntervalOffNothingIsScannedByItself) {
    harness.options.configuration.repoPaths = {"/r/a"};
    make();
    harness.scanner->startPeriodicScan();
    view->choose(id(SettingsControl::scanInterval), 0);
    harness.simulation.advance(3h);
    EXPECT_TRUE(harness.scannedPaths.empty());
}

TEST_F(SettingsViews, TheModeIsStoredAndSaved) {
    make();
    view->choose(id(SettingsControl::appMode), 1);
    EXPECT_EQ(stored().appMode, AppConfiguration::AppMode::regular);
    EXPECT_EQ(saved().back().appMode, AppConfiguration::AppMode::regular);
}

TEST_F(SettingsViews, TheScannersObserversAreToldOfTheMode) {
    make();
    harness.forget();
    view->choose(id(SettingsControl::appMode), 1);
    EXPECT_EQ(harness.timesNotified(Property::configuration), 1);
}

TEST_F(SettingsViews, AnOptionThatIsNotOfferedChangesNothing) {
    make();
    view->choose(id(SettingsControl::scanInterval), 5);
    view->choose(id(SettingsControl::appMode), 2);
    view->choose(id(SettingsControl::showTags), 0);
    EXPECT_TRUE(saved().empty());
}

TEST_F(SettingsViews, AControlThatThereIsNotChangesNothing) {
    make();
    view->setOn(4711, true);
    view->press(4711);
    view->setText(4711, "x");
    drag(SettingsControl::showTags, 0.5);
    view->finishSetting(4711);
    EXPECT_TRUE(saved().empty());
    EXPECT_EQ(timesTold, 0);
}

TEST_F(SettingsViews, AnOpacityIsPublishedAtOnce) {
    make();
    harness.forget();
    drag(SettingsControl::appBackdropOpacity, 0.5);
    EXPECT_EQ(stored().appBackdropOpacity, 0.5);
    EXPECT_EQ(harness.timesNotified(Property::configuration), 1);
}

TEST_F(SettingsViews, EachSliderChangesItsOwnOpacity) {
    make();
    drag(SettingsControl::popoverBackdropOpacity, 0.25);
    EXPECT_EQ(stored().appBackdropOpacity, 0.78);
    EXPECT_EQ(stored().popoverBackdropOpacity, 0.25);
}

TEST_F(SettingsViews, AnOpacityIsShownInWholePercent) {
    make().selectPane(SettingsPane::display);
    drag(SettingsControl::appBackdropOpacity, 0.296);
    EXPECT_EQ(testing::outline(std::get<SettingsSlider>(view->content().cards.at(4).rows.at(0))),
              "slider 0.3 from 0 to 1 by 0.01, \"30 %\" 56 wide accessible=\"Window Background\"");
}

TEST_F(SettingsViews, AnOpacityStaysInItsRange) {
    make();
    drag(SettingsControl::appBackdropOpacity, 7);
    EXPECT_EQ(stored().appBackdropOpacity, 1);
    drag(SettingsControl::appBackdropOpacity, -7);
    EXPECT_EQ(stored().appBackdropOpacity, 0);
    drag(SettingsControl::appBackdropOpacity, std::nan(""));
    EXPECT_EQ(stored().appBackdropOpacity, 0);
}

TEST_F(SettingsViews, DraggingSavesFourTimesASecondAtMost) {
    make();
    for (int i = 0; i < 100; ++i) {
        drag(SettingsControl::appBackdropOpacity, i / 100.0);
        harness.simulation.advance(10ms);
    }
    harness.simulation.advance(1s);
    ASSERT_EQ(saved().size(), 4);
    EXPECT_EQ(saved().back().appBackdropOpacity, 0.99);
}

TEST_F(SettingsViews, LettingGoOfASliderSavesWhatItSet) {
    make();
    drag(SettingsControl::appBackdropOpacity, 0.4);
    EXPECT_TRUE(saved().empty());
    view->finishSetting(id(SettingsControl::appBackdropOpacity));
    ASSERT_EQ(saved().size(), 1);
    EXPECT_EQ(saved()[0].appBackdropOpacity, 0.4);
    harness.simulation.advance(1s);
    EXPECT_EQ(saved().size(), 1);
}

TEST_F(SettingsViews, ASliderThatDidNotMoveSavesNothing) {
    make();
    drag(SettingsControl::appBackdropOpacity, 0.78);
    view->finishSetting(id(SettingsControl::appBackdropOpacity));
    EXPECT_TRUE(saved().empty());
}

TEST_F(SettingsViews, AWindowThatGoesWhileASliderIsHeldSavesWhatItSet) {
    make();
    drag(SettingsControl::popoverBackdropOpacity, 0.4);
    view.reset();
    ASSERT_EQ(saved().size(), 1);
    EXPECT_EQ(saved()[0].popoverBackdropOpacity, 0.4);
}

TEST_F(SettingsViews, AnotherSettingSavesWhatASliderSetToo) {
    make();
    drag(SettingsControl::appBackdropOpacity, 0.4);
    setOn(SettingsControl::showTags, false);
    harness.simulation.advance(1s);
    ASSERT_EQ(saved().size(), 1);
    EXPECT_EQ(saved()[0].appBackdropOpacity, 0.4);
}

TEST_F(SettingsViews, DoneOnlyDismisses) {
    make().done();
    EXPECT_EQ(timesDismissed, 1);
    EXPECT_TRUE(saved().empty());
}

TEST_F(SettingsViews, SyncTakesOverWhatChangedElsewhere) {
    make().selectPane(SettingsPane::display);
    AppConfiguration elsewhere;
    elsewhere.repoPaths = {"/r/new"};
    elsewhere.scanDirectories = {"/one", "/two"};
    elsewhere.discoveryIgnorePaths = {"/three"};
    elsewhere.showRemoteBranches = elsewhere.showTags = elsewhere.showIssues = false;
    elsewhere.keepAwakeOnLaunch = false;
    elsewhere.scanIntervalMinutes = 60;
    elsewhere.appMode = AppConfiguration::AppMode::regular;
    elsewhere.appBackdropOpacity = 0.1;
    elsewhere.popoverBackdropOpacity = 0.2;
    harness.scanner->setConfiguration(elsewhere);
    view->syncStateFromConfiguration();
    const SettingsState& state = view->state();
    EXPECT_EQ(configuredPaths(), std::vector<std::string>{"/r/new"});
    EXPECT_EQ(state.scanDirsText, "/one\n/two");
    EXPECT_EQ(state.ignorePathsText, "/three");
    EXPECT_FALSE(state.showRemoteBranches || state.showTags || state.showIssues ||
                 state.keepAwakeOnLaunch);
    EXPECT_EQ(state.scanIntervalMinutes, 60);
    EXPECT_EQ(state.appMode, AppConfiguration::AppMode::regular);
    EXPECT_EQ(state.appBackdropOpacity, 0.1);
    EXPECT_EQ(state.popoverBackdropOpacity, 0.2);
    EXPECT_EQ(state.selectedPane, SettingsPane::display);
}

}  // namespace
}  // namespace tarnbeck
