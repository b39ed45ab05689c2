// The main menu of an application that shows none: without one it has no Quit command.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace app_commands {

enum class CommandAction { terminate };

struct CommandItem {
    std::string title;
    CommandAction action;
    std::string key;  // pressed with the command modifier

    bool operator==(const CommandItem&) const = default;
};

// An entry of the menu bar with what opens below it.
struct MainMenuItem {
    std::vector<CommandItem> submenu;

    bool operator==(const MainMenuItem&) const = default;
};

struct MainMenu {
    std::vector<MainMenuItem> items;

    bool operator==(const MainMenu&) const = default;
};

namespace AccessoryAppCommandMenu {

// What it needs of the system. Main thread.
struct Platform {
    std::string processName;
    // Makes it the application's main menu.
    std::function<void(const MainMenu&)> setMainMenu;
};

// A menu with the one command "Quit NAME". A name that is absent, or nothing but white space, is
// that of the process.
void installQuitMenu(std::optional<std::string_view> appName, const Platform& platform);

}  // namespace AccessoryAppCommandMenu

}  // namespace app_commands
