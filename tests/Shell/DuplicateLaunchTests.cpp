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
    EXPECT_THAT(shell.takeEvents(), ElementsAre("make Settings", "present settings"));
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
    const SettingsWindowRequest& request = shell.settings.requests[0];
    EXPECT_EQ(&request.scanner, &shell.app->scanner());
    EXPECT_EQ(request.width, 920);
    EXPECT_EQ(request.height, 620);
    EXPECT_EQ(request.minimumWidth, 840);
    EXPECT_EQ(request.minimumHeight, 560);
    EXPECT_EQ(request.title, "Settings");
    EXPECT_EQ(request.autosaveName, "TarnbeckSettingsWindow");
}

TEST(SettingsWindow, ThatIsOpenIsOnlyPresented) {
    ShellHarness shell;
    shell.launch();
    shell.app->settingsWindowController().show();
    shell.takeEvents();
    shell.app->settingsWindowController().show();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("present settings"));
}

TEST(SettingsWindow, IsMadeAnewAfterItWasClosed) {
    ShellHarness shell;
    shell.launch();
    shell.app->settingsWindowController().show();
    shell.settings.close();
    shell.runUntilIdle();
    shell.takeEvents();
    shell.app->settingsWindowController().show();
    EXPECT_THAT(shell.takeEvents(), ElementsAre("make Settings", "present settings"));
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

}  // namespace
}  // namespace tarnbeck
