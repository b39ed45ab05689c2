#include "SettingsRowModel.h"

#include <utility>

#include "QtText.h"

namespace tarnbeck {

namespace {

enum Role { kind = Qt::UserRole, value, isOnCard, isLast };

struct Drawn {
    std::string id;
    QString kind;
    QVariantMap value;
};

QVariantMap buttonValue(const SettingsButton& button) {
    return {{"id", button.id},
            {"title", qtText(button.title)},
            {"symbol", qtText(button.symbol)},
            {"help", qtText(button.help)},
            {"isEnabled", button.isEnabled},
            {"isInProgress", button.isInProgress},
            {"accessibleName", qtText(button.accessibleName)}};
}

Drawn drawn(const SettingsToggle& row) {
    return {std::to_string(row.id),
            QStringLiteral("toggle"),
            {{"id", row.id},
             {"title", qtText(row.title)},
             {"subtitle", qtText(row.subtitle)},
             {"isOn", row.isOn},
             {"accessibleName", qtText(row.accessibleName)}}};
}

Drawn drawn(const SettingsPicker& row) {
    QStringList options;
    for (const std::string_view option : row.options) options.append(qtText(option));
    return {std::to_string(row.id),
            QStringLiteral("picker"),
            {{"id", row.id},
             {"title", qtText(row.title)},
             {"subtitle", qtText(row.subtitle)},
             {"width", row.width},
             {"options", options},
             {"selected", row.selected ? static_cast<int>(*row.selected) : -1},
             {"accessibleName", qtText(row.accessibleName)}}};
}

Drawn drawn(const SettingsSlider& row) {
    return {std::to_string(row.id),
            QStringLiteral("slider"),
            {{"id", row.id},
             {"value", row.value},
             {"from", row.from},
             {"to", row.to},
             {"step", row.step},
             {"valueLabel", qtText(row.valueLabel)},
             {"valueLabelWidth", row.valueLabelWidth},
             {"accessibleName", qtText(row.accessibleName)}}};
}

Drawn drawn(const SettingsTextField& row) {
    return {std::to_string(row.id),
            QStringLiteral("field"),
            {{"id", row.id},
             {"text", qtText(row.text)},
             {"prompt", qtText(row.prompt)},
             {"button", buttonValue(row.button)},
             {"accessibleName", qtText(row.accessibleName)}}};
}

Drawn drawn(const SettingsEditor& row) {
    return {std::to_string(row.id),
            QStringLiteral("editor"),
            {{"id", row.id},
             {"text", qtText(row.text)},
             {"accessibleName", qtText(row.accessibleName)}}};
}

Drawn drawn(const SettingsButtons& row) {
    QVariantList buttons;
    for (const SettingsButton& button : row.buttons) buttons.append(buttonValue(button));
    const int first = row.buttons.empty() ? 0 : row.buttons.front().id;
    return {std::to_string(first), QStringLiteral("buttons"), {{"buttons", buttons}}};
}

Drawn drawn(const SettingsNote& row) {
    return {"note " + std::string(row.text),
            QStringLiteral("note"),
            {{"symbol", qtText(row.symbol)}, {"text", qtText(row.text)}}};
}

Drawn drawn(const SettingsPathRow& row) {
    return {std::to_string(row.id),
            QStringLiteral("path"),
            {{"symbol", qtText(row.symbol)},
             {"path", qtText(row.path)},
             {"remove", buttonValue(row.remove)}}};
}

Drawn drawn(const SettingsDiscoveredRow& row) {
    return {std::to_string(row.id),
            QStringLiteral("discovered"),
            {{"id", row.id},
             {"name", qtText(row.name)},
             {"path", qtText(row.path)},
             {"isSelected", row.isSelected},
             {"accessibleName", qtText(row.accessibleName)}}};
}

}  // namespace

std::vector<SettingsRowModel::Item> SettingsRowModel::itemsOf(
    const std::vector<SettingsCard>& cards) {
    std::vector<Item> items;
    for (const SettingsCard& card : cards) {
        const bool isCard = !card.title.empty();
        if (isCard) {
            items.push_back(
                {.id = "card " + std::string(card.title),
                 .kind = QStringLiteral("head"),
                 .value = {{"title", qtText(card.title)}, {"subtitle", qtText(card.subtitle)}}});
        }
        for (const SettingsRow& row : card.rows) {
            Drawn each = std::visit([](const auto& present) { return drawn(present); }, row);
            items.push_back({.id = std::move(each.id),
                             .kind = std::move(each.kind),
                             .value = std::move(each.value),
                             .isOnCard = isCard});
        }
        if (!items.empty()) items.back().isLast = true;
    }
    return items;
}

void SettingsRowModel::setCards(const std::vector<SettingsCard>& cards) {
    const std::vector<Item> wanted = itemsOf(cards);
    const auto assign = [&](Item& item, std::size_t index) { item = wanted[index]; };
    replay(
        items_, listEdits(items_, wanted, &Item::id),
        [&](std::size_t index) { return wanted[index]; }, assign);
}

int SettingsRowModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(items_.size());
}

QVariant SettingsRowModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= items_.size()) return {};
    const Item& item = items_[row];
    switch (role) {
        case kind:
            return item.kind;
        case value:
            return item.value;
        case isOnCard:
            return item.isOnCard;
        case isLast:
            return item.isLast;
        default:
            return {};
    }
}

QHash<int, QByteArray> SettingsRowModel::roleNames() const {
    return {{kind, "kind"}, {value, "value"}, {isOnCard, "isOnCard"}, {isLast, "isLast"}};
}

}  // namespace tarnbeck
