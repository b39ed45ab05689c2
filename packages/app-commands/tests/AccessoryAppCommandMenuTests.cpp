#include "AccessoryAppCommandMenu.h"

namespace app_commands {
namespace {

MainMenu menuFor(std::optional<std::string_view> appName) {
    MainMenu installed;
    AccessoryAppCommandMenu::installQuitMenu(
        appName,
        {.processName = "process", .setMainMenu = [&](const MainMenu& menu) { installed = menu; }});
    return installed;
}

std::string titleFor(std::optional<std::string_view> appName) {
    return menuFor(appName).items.at(0).submenu.at(0).title;
}

TEST(AccessoryAppCommandMenu_QuitMenu, HasOneItemWithOneCommand) {
    const MainMenu expected{
        {{.submenu = {{.title = "Quit App", .action = CommandAction::terminate, .key = "q"}}}}};
    EXPECT_EQ(menuFor("App"), expected);
}

TEST(AccessoryAppCommandMenu_QuitMenu, NamesTheProcessWithoutAName) {
    EXPECT_EQ(titleFor(std::nullopt), "Quit process");
    EXPECT_EQ(titleFor(""), "Quit process");
}

TEST(AccessoryAppCommandMenu_QuitMenu, NamesTheProcessWhereTheNameIsBlank) {
    EXPECT_EQ(titleFor(" \t\r\n\u00A0\u200B\u2029\u3000\u0085"), "Quit process");
}

TEST(AccessoryAppCommandMenu_QuitMenu, TrimsTheNameAtBothEnds) {
    EXPECT_EQ(titleFor("\n Größe der App\u2003"), "Quit Größe der App");
}

}  // namespace
}  // namespace app_commands
