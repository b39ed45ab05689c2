// What the settings window shows at a moment: a sidebar, and the cards of the selected pane. Plain
// values; a face draws them without knowing what they are about, and hands back the identity of a
// control together with what was done to it. Texts are bytes as they are stored: paths need not be
// UTF-8.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "TextEnumeration.h"

namespace tarnbeck {

// In the order of the sidebar.
enum class SettingsPane { repositories, discovery, display };
constexpr auto rawValues(SettingsPane /*tag*/) {
    return std::to_array<std::pair<SettingsPane, std::string_view>>({
        {SettingsPane::repositories, "repositories"},
        {SettingsPane::discovery, "discovery"},
        {SettingsPane::display, "display"},
    });
}

struct SettingsSidebarEntry {
    SettingsPane pane = SettingsPane::repositories;
    std::string_view title;
    std::string_view subtitle;
    std::string_view symbol;  // one of `symbolNames`, as all symbols here
    bool isSelected = false;

    bool operator==(const SettingsSidebarEntry&) const = default;
};

// The identity of a control: stable for as long as the window is open, whatever else comes or goes.
using SettingsControlId = int;

struct SettingsButton {
    SettingsControlId id = 0;
    std::string_view title;   // empty: the symbol alone
    std::string_view symbol;  // may be empty
    std::string help;         // tooltip; empty: none
    bool isEnabled = true;
    bool isInProgress = false;  // a progress indicator stands in the place of the symbol
    std::string accessibleName;

    bool operator==(const SettingsButton&) const = default;
};

// Some beside one another, at the right.
struct SettingsButtons {
    std::vector<SettingsButton> buttons;

    bool operator==(const SettingsButtons&) const = default;
};

struct SettingsToggle {
    SettingsControlId id = 0;
    std::string_view title;
    std::string_view subtitle;
    bool isOn = false;
    std::string accessibleName;

    bool operator==(const SettingsToggle&) const = default;
};

struct SettingsPicker {
    SettingsControlId id = 0;
    std::string_view title;
    std::string_view subtitle;
    double width = 0;  // device-independent pixels, as all measures here
    std::vector<std::string_view> options;
    std::optional<std::size_t> selected;  // absent: the stored value is none of the options
    std::string accessibleName;

    bool operator==(const SettingsPicker&) const = default;
};

struct SettingsSlider {
    SettingsControlId id = 0;
    double value = 0;
    double from = 0;
    double to = 1;
    double step = 0.01;
    std::string valueLabel;
    double valueLabelWidth = 56;
    std::string accessibleName;  // the value label is its value

    bool operator==(const SettingsSlider&) const = default;
};

// One line, and a button that takes it over.
struct SettingsTextField {
    SettingsControlId id = 0;
    std::string text;
    std::string_view prompt;
    SettingsButton button;
    std::string accessibleName;

    bool operator==(const SettingsTextField&) const = default;
};

// Several lines.
struct SettingsEditor {
    SettingsControlId id = 0;
    std::string text;
    std::string accessibleName;

    bool operator==(const SettingsEditor&) const = default;
};

struct SettingsNote {
    std::string_view symbol;  // may be empty
    std::string text;

    bool operator==(const SettingsNote&) const = default;
};

struct SettingsPathRow {
    SettingsControlId id = 0;  // of the row: there is nothing to be done to it
    std::string_view symbol;
    std::string path;
    SettingsButton remove;

    bool operator==(const SettingsPathRow&) const = default;
};

// A check box, with a name and a path.
struct SettingsDiscoveredRow {
    SettingsControlId id = 0;
    std::string name;
    std::string path;
    bool isSelected = false;
    std::string accessibleName;

    bool operator==(const SettingsDiscoveredRow&) const = default;
};

using SettingsRow =
    std::variant<SettingsToggle, SettingsPicker, SettingsSlider, SettingsTextField, SettingsEditor,
                 SettingsButtons, SettingsNote, SettingsPathRow, SettingsDiscoveredRow>;

// Rows that belong together. Where the title is empty they stand between the cards, on no ground.
struct SettingsCard {
    std::string_view title;
    std::string subtitle;  // may be empty
    std::vector<SettingsRow> rows;

    bool operator==(const SettingsCard&) const = default;
};

struct SettingsContent {
    std::string_view sidebarTitle = "Settings";
    double sidebarWidth = 230;
    std::vector<SettingsSidebarEntry> sidebar;
    std::vector<SettingsCard> cards;      // of the selected pane, from top to bottom
    std::string_view doneTitle = "Done";  // in the toolbar, for Return too; closes the window

    bool operator==(const SettingsContent&) const = default;
};

}  // namespace tarnbeck
