// A list model that goes from one list to another by the fewest steps. Main thread.
#pragma once

#include <QAbstractListModel>
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

#include "ListEdits.h"

namespace tarnbeck {

class EditedListModel : public QAbstractListModel {
    Q_OBJECT

  public:
    using QAbstractListModel::QAbstractListModel;

  protected:
    // Makes `items` what the edits lead to, and tells the views of each step. `make(index)` is a
    // new item for the new list's place; `update(item, index)` brings a present one up to date.
    template <class Item, class Make, class Update>
    void replay(std::vector<Item>& items, const std::vector<ListEdit>& edits, Make make,
                Update update) {
        for (const ListEdit& edit : edits) {
            const auto from = items.begin() + static_cast<std::ptrdiff_t>(edit.from);
            const auto to = items.begin() + static_cast<std::ptrdiff_t>(edit.to);
            const int first = static_cast<int>(edit.from);
            const int target = static_cast<int>(edit.to);
            const int more = static_cast<int>(edit.count) - 1;
            switch (edit.kind) {
                case ListEdit::Kind::remove:
                    beginRemoveRows({}, first, first + more);
                    items.erase(from, from + more + 1);
                    endRemoveRows();
                    break;
                case ListEdit::Kind::move:
                    beginMoveRows({}, first, first, {}, target > first ? target + 1 : target);
                    if (from < to) {
                        std::rotate(from, from + 1, to + 1);
                    } else {
                        std::rotate(to, from, from + 1);
                    }
                    endMoveRows();
                    break;
                case ListEdit::Kind::insert: {
                    beginInsertRows({}, target, target + more);
                    std::vector<Item> made;
                    for (std::size_t each = 0; each < edit.count; ++each) {
                        made.push_back(make(edit.to + each));
                    }
                    items.insert(to, std::make_move_iterator(made.begin()),
                                 std::make_move_iterator(made.end()));
                    endInsertRows();
                    break;
                }
                case ListEdit::Kind::update:
                    for (std::size_t each = 0; each < edit.count; ++each) {
                        update(items[edit.to + each], edit.to + each);
                    }
                    Q_EMIT dataChanged(index(target), index(target + more));
                    break;
            }
        }
    }
};

}  // namespace tarnbeck
