#include "ShellHarness.h"

namespace tarnbeck {
namespace {

using enum AppConfiguration::AppMode;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ShellHarness;
using ::testing::SizeIs;

TEST(DuplicateLaunch, ShowsTheSettingsInTheMenuBarMode) {
    ShellHarness shell(menuBarOnly);
    shell.launch();
    shell.takeEvents();
    shell.activate();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("settings view", "front Settings", "activate"));
}

TEST(DuplicateLaunch, DoesNothingInTheMenuBarModeWithoutAController) {
    ShellHarness shell(menuBarOnly);
    const AppRuntime empty;
    empty.activateFromDuplicateLaunch(shell.desktop);
    EXPECT_THAT(shell.takeEvents(), IsEmpty());
}

TEST(DuplicateLaunch, BringsTheMainWindowToTheFrontInRegularMode) {
    ShellHarness shell(regular);
    shell.desktop.addWindow("Settings");
    shell.launch();
    shell.takeEvents();
    shell.activate();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("activate", "front Tarnbeck"));
}

TEST(DuplicateLaunch, TakesTheFirstOfTwoWindowsOfThatTitle) {
    ShellHarness shell(regular);
    shell.launch();
    shell.desktop.addWindow("Tarnbeck");
    shell.takeEvents();
    shell.activate();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("activate", "front Tarnbeck"));
}

TEST(DuplicateLaunch, OnlyActivatesWhenNoWindowHasTheTitle) {
    ShellHarness shell(regular);
    shell.launch();
    shell.desktop.closeWindows();
    shell.desktop.addWindow("Tarnbeck 2");
    shell.takeEvents();
    shell.activate();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("activate"));
}

TEST(SettingsWindow, IsAskedForInItsSizeAndUnderItsName) {
    ShellHarness shell;
    shell.launch();
    shell.app->settingsWindowController().show();
    ASSERT_THAT(shell.settings.requests, SizeIs(1));
    EXPECT_EQ(&shell.settings.requests[0].scanner, &shell.app->scanner());
    EXPECT_EQ(shell.settings.requests[0].minimumSize, (settings_window::WindowSize{840, 560}));
    EXPECT_EQ(shell.settings.size, (settings_window::WindowSize{920, 620}));
    EXPECT_EQ(shell.settings.title, "Settings");
    EXPECT_EQ(shell.settings.autosaveName, "TarnbeckSettingsWindow");
    EXPECT_EQ(shell.settings.styleMask,
              (settings_window::WindowStyleMask{
                  .titled = true, .closable = true, .miniaturizable = true, .resizable = true}));
}

TEST(SettingsWindow, ThatIsOpenIsOnlyPresented) {
    ShellHarness shell;
    shell.launch();
    shell.app->settingsWindowController().show();
    shell.takeEvents();
    shell.app->settingsWindowController().show();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("front Settings", "activate"));
}

TEST(SettingsWindow, IsMadeAnewAfterItWasClosed) {
    ShellHarness shell;
    shell.launch();
    shell.app->settingsWindowController().show();
    shell.settings.close();
    shell.runUntilIdle();
    shell.takeEvents();
    shell.app->settingsWindowController().show();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("settings view", "front Settings", "activate"));
}

TEST(SettingsWindow, OutlivesTheCallThatToldOfItsClosing) {
    ShellHarness shell;
    shell.launch();
    shell.app->settingsWindowController().show();
    shell.takeEvents();
    shell.settings.close();
    EXPECT_THAT(shell.takeEvents(), IsEmpty());
    shell.runUntilIdle();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("settings gone"));
}

TEST(SettingsWindow, IsGoneAtOnceWhenItIsDropped) {
    ShellHarness shell;
    shell.launch();
    shell.app->settingsWindowController().show();
    shell.takeEvents();
    shell.app->settingsWindowController().dropWindow();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("settings gone"));
    EXPECT_EQ(shell.settings.delegate, nullptr);
}

TEST(SettingsWindow, ThatWasJustClosedIsDroppedToo) {
    ShellHarness shell;
    shell.launch();
    shell.app->settingsWindowController().show();
    shell.takeEvents();
    shell.settings.close();
    shell.app->settingsWindowController().dropWindow();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("settings gone"));
    shell.runUntilIdle();
    EXPECT_THAT(shell.takeEvents(), IsEmpty());
}

}  // namespace
}  // namespace tarnbeck
