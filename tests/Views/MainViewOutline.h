// What the main view shows, as text: one line a thing, so that a test compares all of it at once.
#pragma once

#include <string>
#include <variant>

#include <fmt/format.h>

#include "MainViewContent.h"

namespace tarnbeck::testing {

// "Scan [arrow.clockwise]", with "(help)", "selected" and "= value" where there are such.
inline std::string outline(const ToolbarPill& pill) {
    std::string text = fmt::format("{} [{}]", pill.title, pill.symbol);
    if (!pill.help.empty()) text += fmt::format(" ({})", pill.help);
    if (pill.isSelected) text += " selected";
    if (!pill.accessibleValue.empty()) text += " = " + pill.accessibleValue;
    return text;
}

inline std::string outline(const ControlStrip& strip) {
    std::string text =
        outline(strip.viewToggle) + "\n" + outline(strip.scan) + "\n" + outline(strip.sort) + "\n";
    for (const SortMenuEntry& entry : strip.sortMenu) {
        text += fmt::format("  {} [{}]{}\n", rawValue(entry.mode), entry.symbol,
                            entry.isChecked ? " checkmark" : "");
    }
    if (strip.equalize) text += outline(*strip.equalize) + "\n";
    text += outline(strip.awake) + "\n";
    if (!strip.awakeFailure.empty()) text += "  failed: " + strip.awakeFailure + "\n";
    text += outline(strip.settings) + "\n";
    text += fmt::format("{}: {}, {}\n", strip.filterLabel, rawValue(strip.filter),
                        rawValue(strip.domain));
    text += fmt::format("search [{}] {}: \"{}\"", strip.searchSymbol, strip.searchPrompt,
                        strip.searchText);
    if (strip.clearSearch) text += ", clear:" + outline(*strip.clearSearch);
    return text + "\n";
}

// "* " for the prominent ones.
inline std::string outline(const StatusPill& pill) {
    return fmt::format("{}[{}] {} {}\n", pill.isProminent ? "* " : "", pill.symbol, pill.text,
                       rawValue(pill.color));
}

inline std::string outline(const StatusBar& bar) {
    std::string text;
    for (const StatusPill& pill : bar.pills) text += outline(pill);
    text += "details\n";
    for (const StatusPill& pill : bar.detailPills) text += outline(pill);
    text += "trailing\n";
    for (const StatusPill& pill : bar.trailingDetails) text += outline(pill);
    return text;
}

inline std::string outline(const EmptyState& empty) {
    return fmt::format("[{}] {} / {} / button {}\n", empty.symbol, empty.title, empty.line,
                       empty.button);
}

inline std::string outline(const EmptyResult& empty) {
    return fmt::format("[{}] {}{}\n", empty.symbol, empty.isLoading ? "loading " : "", empty.text);
}

inline std::string outline(const SectionList& list) {
    std::string text = std::string(rawValue(list.mode)) + "\n";
    for (const SectionList::Entry& entry : list.entries) text += "  " + entry.path + "\n";
    return text;
}

inline std::string outline(const ViewAlert& alert) {
    std::string text = fmt::format("alert {}: {}", alert.title, alert.message);
    for (const ViewAlert::Button& button : alert.buttons) text += " <" + button.title + ">";
    return text + "\n";
}

inline std::string outline(const MainViewContent& content) {
    std::string text = content.strip ? outline(*content.strip) : "no strip\n";
    text += "--\n" + std::visit([](const auto& area) { return outline(area); }, content.area);
    text += "--\n" + outline(content.statusBar);
    if (content.toast.isVisible) text += "toast " + content.toast.message + "\n";
    if (content.alert) text += outline(*content.alert);
    return text + fmt::format("backdrop {:g}\n", content.backdropOpacity);
}

}  // namespace tarnbeck::testing
