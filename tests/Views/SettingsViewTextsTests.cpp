// Every word of the settings window.
#include <set>

#include "SettingsFixture.h"
#include "Symbol.h"

namespace tarnbeck {
namespace {

class SettingsView_Texts : public testing::SettingsFixture {};

TEST_F(SettingsView_Texts, OpensOnTheRepositories) {
    harness.options.configuration.repoPaths = {"~/a", "/r/b"};
    make();
    EXPECT_EQ(testing::outline(view->content()), R"(sidebar "Settings" 230 wide
  * "Repositories" - "Monitored paths" symbol="folder.badge.gearshape"
  - "Discovery" - "Scan directories" symbol="magnifyingglass"
  - "Display" - "Visibility & auto-scan" symbol="slider.horizontal.3"
toolbar "Done"
card "Monitored Repositories" - "2 configured"
  path "~/a" symbol="folder.fill"
    button "" symbol="xmark.circle.fill" help="Remove" accessible="Remove ~/a"
  path "/r/b" symbol="folder.fill"
    button "" symbol="xmark.circle.fill" help="Remove" accessible="Remove /r/b"
card "Add Custom Repository" - "Add a path directly"
  field "" prompt="e.g. ~/projects/my-repo" accessible="Add Custom Repository"
    button "Add" accessible="Add" disabled
)");
}

TEST_F(SettingsView_Texts, SayHowToBeginWithoutRepositories) {
    make();
    EXPECT_EQ(testing::outline(view->content().cards.at(0)),
              R"(card "Monitored Repositories" - "0 configured"
  note "No repositories configured yet. Add one manually or use Discovery."
)");
}

TEST_F(SettingsView_Texts, DiscoveryBeforeAnythingWasSearched) {
    harness.options.configuration.scanDirectories = {"~/projects", "/srv"};
    harness.options.configuration.discoveryIgnorePaths = {"/srv/old"};
    make().selectPane(SettingsPane::discovery);
    EXPECT_EQ(testing::outline(view->content()), R"(sidebar "Settings" 230 wide
  - "Repositories" - "Monitored paths" symbol="folder.badge.gearshape"
  * "Discovery" - "Scan directories" symbol="magnifyingglass"
  - "Display" - "Visibility & auto-scan" symbol="slider.horizontal.3"
toolbar "Done"
card "Scan Source Directories" - "One directory per line"
  editor "~/projects
/srv" accessible="Scan Source Directories"
card "Ignore Paths" - ""
  editor "/srv/old" accessible="Ignore Paths"
no card
  buttons
    button "Scan for Git Repos" symbol="arrow.clockwise" accessible="Scan for Git Repos"
)");
}

TEST_F(SettingsView_Texts, DiscoveryThatIsSearching) {
    make().selectPane(SettingsPane::discovery);
    press(SettingsControl::scanForRepos);
    EXPECT_EQ(testing::outline(view->content().cards.at(2)), R"(no card
  buttons
    button "Scanning…" symbol="arrow.clockwise" accessible="Scanning…" in progress
)");
    EXPECT_EQ(view->content().cards.size(), 3);
}

TEST_F(SettingsView_Texts, DiscoveryThatFoundNothingNew) {
    make();
    discover({});
    EXPECT_EQ(testing::outline(view->content().cards.at(3)),
              R"(card "Discovery Results" - "0 available"
  note "No new repositories found."
)");
}

TEST_F(SettingsView_Texts, DiscoveryWithNothingSelected) {
    make();
    discover({"code/a", "code/b"});
    EXPECT_EQ(testing::outline(view->content().cards.at(3)),
              fmt::format(R"(card "Discovery Results" - "2 available"
  check box off "a" - "{0}" accessible="a, {0}"
  check box off "b" - "{1}" accessible="b, {1}"
  buttons
    button "Ignore Selected" accessible="Ignore Selected" disabled
    button "Add Selected" accessible="Add Selected" disabled
)",
                          inHome("code/a"), inHome("code/b")));
}

TEST_F(SettingsView_Texts, DiscoveryWithASelection) {
    make();
    discover({"code/a"});
    tick("a");
    EXPECT_EQ(testing::outline(view->content().cards.at(3)),
              fmt::format(R"(card "Discovery Results" - "1 available"
  check box on "a" - "{0}" accessible="a, {0}"
  buttons
    button "Ignore Selected" accessible="Ignore Selected"
    button "Add Selected" accessible="Add Selected"
)",
                          inHome("code/a")));
}

TEST_F(SettingsView_Texts, Display) {
    make().selectPane(SettingsPane::display);
    EXPECT_EQ(cards(), R"~(card "Visibility" - "Control what is shown in repository details"
  toggle "Show remote branches" - "Display non-default remote branches" on accessible="Show remote branches"
  toggle "Show tags" - "Display repository tags section" on accessible="Show tags"
  toggle "Show GitHub issues" - "Display open issues from GitHub (requires gh CLI)" on accessible="Show GitHub issues"
card "Auto Scan" - "Background refresh interval"
  picker "Scan interval" - "How often repositories are refreshed automatically" 140 wide accessible="Scan interval"
    - "Off"
    - "5 min"
    - "15 min"
    * "30 min"
    - "60 min"
card "Application Mode" - "Choose how the app runs after restart"
  picker "Startup mode" - "Menu bar only or regular window app" 260 wide accessible="Startup mode"
    * "Menu Bar Only"
    - "Regular App"
  note "Restart required to apply app mode changes." symbol="info.circle"
card "System" - "Control system-level app behavior"
  toggle "Start with Keep Awake enabled" - "Run caffeinate automatically when Tarnbeck launches" on accessible="Start with Keep Awake enabled"
card "Window Background" - "Dark tint over the wallpaper-glass for the regular app window. Lower lets more of the desktop show through."
  slider 0.78 from 0 to 1 by 0.01, "78 %" 56 wide accessible="Window Background"
card "Menu Bar Popover Background" - "Dark tint over the popover surface. macOS popovers are not translucent to the desktop, so this only adjusts how dark the surface looks."
  slider 0.55 from 0 to 1 by 0.01, "55 %" 56 wide accessible="Menu Bar Popover Background"
)~");
}

TEST_F(SettingsView_Texts, DisplayEndsWithTheVersion) {
    versionLabel = "1.2 (34) • build unknown";
    make().selectPane(SettingsPane::display);
    EXPECT_EQ(view->content().cards.size(), 7);
    EXPECT_EQ(testing::outline(view->content().cards.back()), R"~(no card
  note "1.2 (34) • build unknown"
)~");
}

TEST_F(SettingsView_Texts, AnIntervalThatIsNoOptionSelectsNone) {
    harness.options.configuration.scanIntervalMinutes = 45;
    make().selectPane(SettingsPane::display);
    EXPECT_EQ(std::get<SettingsPicker>(view->content().cards.at(1).rows.at(0)).selected,
              std::nullopt);
}

TEST_F(SettingsView_Texts, PanesAreNamedAsTheyAreCalled) {
    EXPECT_EQ(rawValue(SettingsPane::repositories), "repositories");
    EXPECT_EQ(rawValue(SettingsPane::discovery), "discovery");
    EXPECT_EQ(rawValue(SettingsPane::display), "display");
}

// Every symbol that occurs in the text of an outline.
std::set<std::string> symbolsIn(const std::string& outline) {
    std::set<std::string> found;
    const std::string mark = "symbol=\"";
    for (auto at = outline.find(mark); at != std::string::npos; at = outline.find(mark, at)) {
        at += mark.size();
        found.insert(outline.substr(at, outline.find('"', at) - at));
    }
    return found;
}

TEST_F(SettingsView_Texts, SymbolsAreDrawn) {
    harness.options.configuration.repoPaths = {"/r/a"};
    make();
    std::string everything;
    for (const auto& [pane, name] : rawValues(SettingsPane{})) {
        view->selectPane(pane);
        everything += testing::outline(view->content());
    }
    const auto symbols = symbolsIn(everything);
    EXPECT_EQ(symbols.size(), 7);
    for (const std::string& symbol : symbols) EXPECT_TRUE(isSymbol(symbol)) << symbol;
}

}  // namespace
}  // namespace tarnbeck
