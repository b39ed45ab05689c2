#include "AccessoryAppCommandMenu.h"

#include <algorithm>
#include <array>

#include <unicode/unistr.h>

namespace app_commands {
namespace {

// White space and line breaks, the zero-width space among them.
bool isBlank(char16_t character) {
    constexpr std::array<char16_t, 10> others = {0x0020, 0x0085, 0x00A0, 0x1680, 0x2028,
                                                 0x2029, 0x202F, 0x205F, 0x3000, 0x0009};
    return (character >= 0x000A && character <= 0x000D) ||
           (character >= 0x2000 && character <= 0x200B) ||
           std::ranges::find(others, character) != others.end();
}

std::string trimmed(std::string_view text) {
    const auto characters =
        icu::UnicodeString::fromUTF8({text.data(), static_cast<int>(text.size())});
    int begin = 0;
    int end = characters.length();
    while (begin < end && isBlank(characters.charAt(begin))) ++begin;
    while (end > begin && isBlank(characters.charAt(end - 1))) --end;
    std::string result;
    return characters.tempSubStringBetween(begin, end).toUTF8String(result);
}

}  // namespace

void AccessoryAppCommandMenu::installQuitMenu(std::optional<std::string_view> appName,
                                              const Platform& platform) {
    std::string name = trimmed(appName.value_or(""));
    if (name.empty()) name = platform.processName;
    const CommandItem quit{.title = "Quit " + name, .action = CommandAction::terminate, .key = "q"};
    platform.setMainMenu({.items = {{.submenu = {quit}}}});
}

}  // namespace app_commands
