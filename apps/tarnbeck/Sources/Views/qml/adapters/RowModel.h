// The rows of one section as a model that changes row by row: what stays keeps its delegate, and
// with it focus, hover and animation. Main thread.
#pragma once

#include <string>
#include <vector>

#include <QtQml/qqmlregistration.h>

#include "EditedListModel.h"
#include "Row.h"

namespace tarnbeck {

class RowModel : public EditedListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to its view")

  public:
    using EditedListModel::EditedListModel;

    // Replaces the rows by the fewest changes.
    void setRows(const std::vector<Row>& rows);
    // The row that `rowKey` stands for; null when it has gone.
    const Row* rowOf(int rowKey) const;

    // Where a row stands below the first one, and how high it is.
    Q_INVOKABLE double topOf(int index) const;
    Q_INVOKABLE double heightOf(int index) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  private:
    // What QML names a row by: texts never come back from it.
    struct Held {
        int key;
        int changes;  // how often the row has changed since it came
        Row row;
    };
    std::vector<Held> rows_;
    int nextKey_ = 1;
};

}  // namespace tarnbeck
