#include "ShellHarness.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using enum AppConfiguration::AppMode;
using ::testing::Contains;
using ::testing::ElementsAre;
using testing::Events;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::ShellHarness;
using ::testing::SizeIs;

TEST(Creation, HappensInAFixedOrder) {
    ShellHarness shell(menuBarOnly);
    shell.scanner.options.configuration.keepAwakeOnLaunch = true;
    shell.input.arguments = {"--app-mode=regular"};
    shell.make();
    EXPECT_THAT(shell.desktop.events, ElementsAre("delegate", "scanner", "awake -i -m -s for 4711",
                                                  "popover made", "save regular"));
}

TEST(Creation, TakesFixturesWhereTheyAreAskedFor) {
    ShellHarness shell;
    shell.input.arguments = {"--ui-test-fixtures"};
    shell.make();
    EXPECT_THAT(shell.desktop.events, Contains("fixture scanner"));
    EXPECT_THAT(shell.desktop.events, Not(Contains("scanner")));
}

TEST(Creation, LeavesTheMachineAloneWithoutTheSetting) {
    ShellHarness shell;
    shell.make();
    EXPECT_FALSE(shell.app->caffeinateController().isActive());
}

TEST(Creation, FillsTheRuntime) {
    ShellHarness shell(regular);
    shell.make();
    EXPECT_EQ(shell.runtime.launchMode, regular);
    EXPECT_EQ(shell.runtime.menuBarController, &shell.app->menuBarController());
    EXPECT_EQ(shell.runtime.settingsWindowController, &shell.app->settingsWindowController());
    EXPECT_EQ(shell.runtime.caffeinateController, &shell.app->caffeinateController());
}

TEST(Creation, MakesNoStatusItemYet) {
    ShellHarness shell;
    shell.make();
    EXPECT_THAT(shell.desktop.events, Not(Contains("status item")));
}

TEST(LaunchMode_Kept, SwitchToRegularIsSaved) {
    ShellHarness shell(menuBarOnly);
    shell.input.arguments = {"--app-mode=regular"};
    shell.make();
    ASSERT_THAT(shell.saved, SizeIs(1));
    EXPECT_EQ(shell.saved[0].appMode, regular);
    EXPECT_EQ(shell.app->scanner().configuration().appMode, regular);
    EXPECT_EQ(shell.app->launchMode(), regular);
}

TEST(LaunchMode_Kept, SwitchToTheMenuBarIsSaved) {
    ShellHarness shell(regular);
    shell.input.arguments = {"--app-mode=menubar"};
    shell.make();
    ASSERT_THAT(shell.saved, SizeIs(1));
    EXPECT_EQ(shell.saved[0].appMode, menuBarOnly);
}

TEST(LaunchMode_Kept, LaterLaunchWithoutASwitchStaysInTheMenuBar) {
    ShellHarness first(regular);
    first.input.arguments = {"--app-mode=menubar"};
    first.make();
    ShellHarness later(first.saved.at(0).appMode);
    later.make();
    EXPECT_EQ(later.app->launchMode(), menuBarOnly);
}

TEST(LaunchMode_Kept, NothingIsSavedWhenItIsTheConfiguredOne) {
    ShellHarness shell(regular);
    shell.input.arguments = {"--app-mode=regular"};
    shell.make();
    EXPECT_THAT(shell.saved, IsEmpty());
}

TEST(LaunchMode_Kept, ModeThatFixturesForceIsSavedOnTheirConfiguration) {
    ShellHarness shell(menuBarOnly);
    shell.input.environment = {{"TARNBECK_UI_TEST_MODE", "1"}};
    shell.make();
    ASSERT_THAT(shell.saved, SizeIs(1));
    EXPECT_EQ(shell.saved[0].appMode, regular);
}

TEST(Scenes, MainWindowBearsTheNameAndItsSize) {
    ShellHarness shell(regular);
    shell.make().openScenes();
    ASSERT_THAT(shell.desktop.groups, SizeIs(1));
    EXPECT_EQ(shell.desktop.groups[0].title, "Tarnbeck");
    EXPECT_EQ(shell.desktop.groups[0].width, 1200);
    EXPECT_EQ(shell.desktop.groups[0].height, 850);
    EXPECT_TRUE(shell.desktop.groups[0].showsMainView);
}

TEST(Scenes, MainWindowStaysInRegularMode) {
    ShellHarness shell(regular);
    shell.make().openScenes();
    shell.runUntilIdle();
    EXPECT_THAT(shell.desktop.events, Not(Contains("out Tarnbeck")));
}

TEST(Scenes, MainWindowIsClearInTheMenuBarMode) {
    ShellHarness shell(menuBarOnly);
    shell.make().openScenes();
    ASSERT_THAT(shell.desktop.groups, SizeIs(1));
    EXPECT_FALSE(shell.desktop.groups[0].showsMainView);
}

TEST(Scenes, ClearWindowIsHiddenInALaterStep) {
    ShellHarness shell(menuBarOnly);
    shell.make().openScenes();
    EXPECT_THAT(shell.desktop.events, Not(Contains("out Tarnbeck")));
    shell.runUntilIdle();
    EXPECT_THAT(shell.desktop.events, Contains("out Tarnbeck"));
}

TEST(Scenes, NoOtherWindowIsHidden) {
    ShellHarness shell(menuBarOnly);
    shell.desktop.addWindow("Tarnbeck popover");
    shell.make().openScenes();
    shell.runUntilIdle();
    EXPECT_THAT(shell.desktop.events, Not(Contains("out Tarnbeck popover")));
}

Events eventsOfLaunch(ShellHarness& shell) {
    shell.make();
    shell.takeEvents();
    shell.desktop.delegate->applicationDidFinishLaunching();
    return shell.takeEvents();
}

TEST(Launch, InTheMenuBarModeInstallsAQuitMenuAndBecomesAnAccessory) {
    ShellHarness shell(menuBarOnly);
    EXPECT_THAT(eventsOfLaunch(shell),
                ElementsAre("regular", "menu Quit Tarnbeck", "status item", "item visible",
                            "accessory", "activation handler"));
}

TEST(Launch, InRegularModeActivatesTheApplication) {
    ShellHarness shell(regular);
    EXPECT_THAT(eventsOfLaunch(shell), ElementsAre("regular", "status item", "item visible",
                                                   "activate", "activation handler"));
}

TEST(Launch, ToldTwiceMakesOneStatusItem) {
    ShellHarness shell(regular);
    eventsOfLaunch(shell);
    shell.desktop.delegate->applicationDidFinishLaunching();
    EXPECT_THAT(shell.desktop.events, Not(Contains("status item")));
}

TEST(End, StopsKeepingTheMachineAwake) {
    ShellHarness shell;
    shell.scanner.options.configuration.keepAwakeOnLaunch = true;
    shell.launch();
    shell.takeEvents();
    shell.desktop.delegate->applicationWillTerminate();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("asleep"));
}

TEST(End, LeavesNothingInTheRuntime) {
    ShellHarness shell;
    shell.launch();
    shell.app.reset();
    EXPECT_EQ(shell.runtime.menuBarController, nullptr);
    EXPECT_EQ(shell.runtime.settingsWindowController, nullptr);
    EXPECT_EQ(shell.runtime.caffeinateController, nullptr);
}

TEST(End, PlatformTellsNobodyAnyMore) {
    ShellHarness shell;
    shell.launch();
    shell.app.reset();
    EXPECT_EQ(shell.desktop.delegate, nullptr);
}

TEST(End, DoesNotComeWithTheLastWindowInEitherMode) {
    for (const auto mode : {menuBarOnly, regular}) {
        ShellHarness shell(mode);
        shell.launch();
        EXPECT_FALSE(shell.desktop.delegate->applicationShouldTerminateAfterLastWindowClosed());
    }
}

// A tray is looked for once the panel has had its moment.
void launchAndWait(ShellHarness& shell) {
    shell.launch();
    shell.takeEvents();
    shell.scanner.simulation.advance(5s);
}

TEST(WithoutATray, MainWindowOpensAndASayingWhy) {
    ShellHarness shell(menuBarOnly);
    shell.desktop.statusArea = false;
    launchAndWait(shell);
    EXPECT_THAT(shell.takeEvents(), ElementsAre("main window"));
    EXPECT_THAT(shell.reports, SizeIs(1));
}

TEST(WithoutATray, OneThatComesWithinTheFirstMomentIsEnough) {
    ShellHarness shell(menuBarOnly);
    shell.desktop.statusArea = false;
    shell.launch();
    shell.takeEvents();
    shell.scanner.simulation.advance(900ms);
    shell.desktop.statusArea = true;
    shell.scanner.simulation.advance(5s);
    EXPECT_THAT(shell.takeEvents(), IsEmpty());
    EXPECT_THAT(shell.reports, IsEmpty());
}

TEST(WithoutATray, RegularModeNeedsNoSecondWindow) {
    ShellHarness shell(regular);
    shell.desktop.statusArea = false;
    launchAndWait(shell);
    EXPECT_THAT(shell.takeEvents(), IsEmpty());
    EXPECT_THAT(shell.reports, IsEmpty());
}

TEST(WithoutATray, StoredModeStays) {
    ShellHarness shell(menuBarOnly);
    shell.desktop.statusArea = false;
    launchAndWait(shell);
    EXPECT_THAT(shell.saved, IsEmpty());
    EXPECT_EQ(shell.app->scanner().configuration().appMode, menuBarOnly);
}

TEST(WithoutATray, ClosingTheLastWindowQuits) {
    ShellHarness shell(menuBarOnly);
    shell.desktop.statusArea = false;
    launchAndWait(shell);
    EXPECT_TRUE(shell.desktop.delegate->applicationShouldTerminateAfterLastWindowClosed());
}

TEST(WithoutATray, OneThatComesLaterKeepsTheApplicationWithoutWindows) {
    ShellHarness shell(menuBarOnly);
    shell.desktop.statusArea = false;
    launchAndWait(shell);
    shell.desktop.statusArea = true;
    EXPECT_FALSE(shell.desktop.delegate->applicationShouldTerminateAfterLastWindowClosed());
}

TEST(FirstStart, PopoverOpensOnceByItself) {
    ShellHarness shell(menuBarOnly);
    shell.isFirstStart = true;
    launchAndWait(shell);
    EXPECT_THAT(shell.takeEvents(),
                ElementsAre("host", "popover view with strip 1702x1015", "popover below"));
}

TEST(FirstStart, PopoverThatTheUserOpenedStaysOpen) {
    ShellHarness shell(menuBarOnly);
    shell.isFirstStart = true;
    shell.launch();
    shell.desktop.clickWith(ClickEvent{});
    shell.takeEvents();
    shell.scanner.simulation.advance(5s);
    EXPECT_THAT(shell.takeEvents(), IsEmpty());
    EXPECT_TRUE(shell.desktop.popover->shown);
}

TEST(FirstStart, PopoverThatTheUserClosedStaysClosed) {
    ShellHarness shell(menuBarOnly);
    shell.isFirstStart = true;
    shell.launch();
    shell.desktop.clickWith(ClickEvent{});
    shell.desktop.popover->close();
    shell.scanner.simulation.advance(5s);
    EXPECT_FALSE(shell.desktop.popover->shown);
}

TEST(FirstStart, PopoverStaysClosedForWhoHasOpenedTheMenu) {
    ShellHarness shell(menuBarOnly);
    shell.isFirstStart = true;
    shell.launch();
    shell.desktop.clickWith(ClickEvent{.kind = ClickKind::rightMouseUp});
    shell.scanner.simulation.advance(5s);
    EXPECT_FALSE(shell.desktop.popover->shown);
}

TEST(FirstStart, PopoverStaysClosedAtLaterStarts) {
    ShellHarness shell(menuBarOnly);
    launchAndWait(shell);
    EXPECT_THAT(shell.takeEvents(), IsEmpty());
}

TEST(FirstStart, WindowIsEnoughInRegularMode) {
    ShellHarness shell(regular);
    shell.isFirstStart = true;
    launchAndWait(shell);
    EXPECT_THAT(shell.takeEvents(), IsEmpty());
}

TEST(FirstStart, MainWindowOpensWithoutATray) {
    ShellHarness shell(menuBarOnly);
    shell.isFirstStart = true;
    shell.desktop.statusArea = false;
    launchAndWait(shell);
    EXPECT_THAT(shell.takeEvents(), ElementsAre("main window"));
}

}  // namespace
}  // namespace tarnbeck
