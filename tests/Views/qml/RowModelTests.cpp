#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RowModel.h"

namespace tarnbeck::testing {
namespace {

Row rowOf(const std::string& id, const std::string& title) {
    Row row;
    row.id = id;
    row.title = title;
    return row;
}

QVariant valueAt(const RowModel& model, int row, const QByteArray& role) {
    return model.data(model.index(row), model.roleNames().key(role));
}

TEST(RowModel, ChangesRowByRow) {
    RowModel model;
    model.setRows({rowOf("a", "A"), rowOf("b", "B"), rowOf("c", "C")});
    QSignalSpy removed(&model, &RowModel::rowsRemoved);
    QSignalSpy inserted(&model, &RowModel::rowsInserted);
    QSignalSpy changed(&model, &RowModel::dataChanged);
    QSignalSpy reset(&model, &RowModel::modelReset);
    model.setRows({rowOf("a", "A"), rowOf("c", "other"), rowOf("d", "D")});
    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(reset.count(), 0);
    EXPECT_EQ(valueAt(model, 1, "title"), QVariant("other"));
    EXPECT_EQ(valueAt(model, 2, "title"), QVariant("D"));
}

TEST(RowModel, KeepsTheKeyOfARowThatMoves) {
    RowModel model;
    model.setRows({rowOf("a", "A"), rowOf("b", "B")});
    const QVariant key = valueAt(model, 0, "rowKey");
    model.setRows({rowOf("b", "B"), rowOf("a", "A")});
    EXPECT_EQ(valueAt(model, 1, "rowKey"), key);
    ASSERT_NE(model.rowOf(key.toInt()), nullptr);
    EXPECT_EQ(model.rowOf(key.toInt())->id, "a");
}

TEST(RowModel, KnowsNoRowThatHasGone) {
    RowModel model;
    model.setRows({rowOf("a", "A")});
    const int key = valueAt(model, 0, "rowKey").toInt();
    model.setRows({});
    EXPECT_EQ(model.rowOf(key), nullptr);
    EXPECT_EQ(model.rowCount(), 0);
}

TEST(RowModel, CountsAChangeOnlyWhereTheRowTellsSomethingElse) {
    RowModel model;
    Row row = rowOf("a", "A");
    row.isExpanded = false;
    model.setRows({row});
    row.isExpanded = true;
    row.isTitleHighlighted = true;
    model.setRows({row});
    EXPECT_EQ(valueAt(model, 0, "changes"), QVariant(0));
    row.countLabel = "3";
    model.setRows({row});
    EXPECT_EQ(valueAt(model, 0, "changes"), QVariant(1));
}

TEST(RowModel, ShowsBytesThatAreNotUtf8AsReplacements) {
    RowModel model;
    model.setRows({rowOf("\xff", "caf\xe9")});
    EXPECT_EQ(valueAt(model, 0, "title").toString(), QString::fromUtf8("caf\xef\xbf\xbd"));
    EXPECT_EQ(model.rowOf(valueAt(model, 0, "rowKey").toInt())->id, "\xff");
}

TEST(RowModel, OffersToCopyInWords) {
    RowModel model;
    Row row = rowOf("a", "A");
    row.actions = {{.kind = RowActionKind::copy, .symbol = "doc.on.doc", .reference = "main"}};
    model.setRows({row});
    const QVariantList actions = valueAt(model, 0, "actions").toList();
    ASSERT_EQ(actions.size(), 1);
    const QMetaObject* meta = actions[0].metaType().metaObject();
    const int property = meta->indexOfProperty("menuTitle");
    EXPECT_EQ(meta->property(property).readOnGadget(actions[0].constData()).toString(),
              QStringLiteral("Copy \"main\""));
}

}  // namespace
}  // namespace tarnbeck::testing
