// The settings window as lines of text: all that is shown, told and offered, in its order.
#pragma once

#include <string>
#include <variant>

#include <fmt/format.h>

#include "SettingsContent.h"

namespace tarnbeck::testing {

// ` key="value"`, and nothing for an empty value.
inline std::string shown(std::string_view key, std::string_view value) {
    return value.empty() ? "" : fmt::format(" {}=\"{}\"", key, value);
}

inline std::string outline(const SettingsButton& button) {
    return fmt::format("button \"{}\"", button.title) + shown("symbol", button.symbol) +
           shown("help", button.help) + shown("accessible", button.accessibleName) +
           (button.isEnabled ? "" : " disabled") + (button.isInProgress ? " in progress" : "");
}

inline std::string outline(const SettingsToggle& toggle) {
    return fmt::format("toggle \"{}\" - \"{}\" {}", toggle.title, toggle.subtitle,
                       toggle.isOn ? "on" : "off") +
           shown("accessible", toggle.accessibleName);
}

inline std::string outline(const SettingsPicker& picker) {
    std::string text =
        fmt::format("picker \"{}\" - \"{}\" {} wide", picker.title, picker.subtitle, picker.width) +
        shown("accessible", picker.accessibleName);
    for (std::size_t i = 0; i < picker.options.size(); ++i) {
        text += fmt::format("\n    {} \"{}\"", picker.selected == i ? "*" : "-", picker.options[i]);
    }
    return text;
}

inline std::string outline(const SettingsSlider& slider) {
    return fmt::format("slider {} from {} to {} by {}, \"{}\" {} wide", slider.value, slider.from,
                       slider.to, slider.step, slider.valueLabel, slider.valueLabelWidth) +
           shown("accessible", slider.accessibleName);
}

inline std::string outline(const SettingsTextField& field) {
    return fmt::format("field \"{}\" prompt=\"{}\"", field.text, field.prompt) +
           shown("accessible", field.accessibleName) + "\n    " + outline(field.button);
}

inline std::string outline(const SettingsEditor& editor) {
    return fmt::format("editor \"{}\"", editor.text) + shown("accessible", editor.accessibleName);
}

inline std::string outline(const SettingsButtons& row) {
    std::string text = "buttons";
    for (const SettingsButton& button : row.buttons) text += "\n    " + outline(button);
    return text;
}

inline std::string outline(const SettingsNote& note) {
    return fmt::format("note \"{}\"", note.text) + shown("symbol", note.symbol);
}

inline std::string outline(const SettingsPathRow& row) {
    return fmt::format("path \"{}\"", row.path) + shown("symbol", row.symbol) + "\n    " +
           outline(row.remove);
}

inline std::string outline(const SettingsDiscoveredRow& row) {
    return fmt::format("check box {} \"{}\" - \"{}\"", row.isSelected ? "on" : "off", row.name,
                       row.path) +
           shown("accessible", row.accessibleName);
}

inline std::string outline(const SettingsCard& card) {
    std::string text = card.title.empty()
                           ? std::string("no card\n")
                           : fmt::format("card \"{}\" - \"{}\"\n", card.title, card.subtitle);
    for (const SettingsRow& row : card.rows) {
        text += "  " + std::visit([](const auto& each) { return outline(each); }, row) + "\n";
    }
    return text;
}

// The cards alone.
inline std::string outlineOfCards(const SettingsContent& content) {
    std::string text;
    for (const SettingsCard& card : content.cards) text += outline(card);
    return text;
}

inline std::string outline(const SettingsContent& content) {
    std::string text =
        fmt::format("sidebar \"{}\" {} wide\n", content.sidebarTitle, content.sidebarWidth);
    for (const SettingsSidebarEntry& entry : content.sidebar) {
        text += fmt::format("  {} \"{}\" - \"{}\" symbol=\"{}\"\n", entry.isSelected ? "*" : "-",
                            entry.title, entry.subtitle, entry.symbol);
    }
    return text + fmt::format("toolbar \"{}\"\n", content.doneTitle) + outlineOfCards(content);
}

}  // namespace tarnbeck::testing
