// The rows of the selected settings pane as a model that changes row by row. A card's head is a row
// too. Main thread.
#pragma once

#include <QVariantMap>
#include <string>
#include <vector>

#include <QtQml/qqmlregistration.h>

#include "EditedListModel.h"
#include "SettingsContent.h"

namespace tarnbeck {

class SettingsRowModel : public EditedListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to its view")

  public:
    using EditedListModel::EditedListModel;

    void setCards(const std::vector<SettingsCard>& cards);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  private:
    struct Item {
        std::string id;
        QString kind;
        QVariantMap value;
        bool isOnCard = true;
        bool isLast = false;  // of its card
        bool operator==(const Item&) const = default;
    };
    static std::vector<Item> itemsOf(const std::vector<SettingsCard>& cards);

    std::vector<Item> items_;
};

}  // namespace tarnbeck
