#include "RowModel.h"

#include <algorithm>
#include <utility>

#include "ActionValue.h"
#include "QtText.h"
#include "RepositorySectionLayout.h"

namespace tarnbeck {

namespace {

enum Role {
    rowKey = Qt::UserRole,
    kind,
    depth,
    chevron,
    symbol,
    symbolColor,
    isLoading,
    status,
    statusColor,
    reference,
    title,
    countLabel,
    isTitleSecondary,
    isMonospaced,
    isElidedInMiddle,
    isTitleHighlighted,
    metaStatus,
    metaStatusColor,
    metaLabels,
    help,
    isClickable,
    opensByReference,
    clickHelp,
    actions,
    accessibleName,
    rowHeight,
    changes,
};

QString chevronOf(const Row& row) {
    if (!row.isExpanded) return {};
    return *row.isExpanded ? QStringLiteral("chevron.down") : QStringLiteral("chevron.right");
}

QVariant valueOf(const Row& row, int role) {
    switch (role) {
        case kind:
            return static_cast<int>(row.kind);
        case depth:
            return row.depth;
        case chevron:
            return chevronOf(row);
        case symbol:
            return qtText(row.symbol);
        case symbolColor:
            return qtText(row.symbolColor);
        case isLoading:
            return row.isLoading;
        case status:
            return qtText(row.status);
        case statusColor:
            return qtText(row.statusColor);
        case reference:
            return qtText(row.reference);
        case title:
            return qtText(row.title);
        case countLabel:
            return qtText(row.countLabel);
        case isTitleSecondary:
            return row.isTitleSecondary;
        case isMonospaced:
            return row.isMonospaced;
        case isElidedInMiddle:
            return row.isElidedInMiddle;
        case isTitleHighlighted:
            return row.isTitleHighlighted;
        case metaStatus:
            return qtText(row.metadata.status.value_or(std::string()));
        case metaStatusColor:
            return qtText(row.metadata.statusColor);
        case metaLabels:
            return qtTexts(row.metadata.labels).join(QStringLiteral(", "));
        case help:
            return qtText(row.help);
        case isClickable:
            return row.click.has_value();
        // Of an issue only the number is a link; a pull request opens wherever it is clicked.
        case opensByReference:
            return row.kind == Row::Kind::issue && row.click.has_value();
        case clickHelp:
            return row.click ? qtText(row.click->help) : QString();
        case actions:
            return actionValues(row.actions);
        case accessibleName:
            return qtText(row.accessibleName);
        case rowHeight:
            return static_cast<int>(RepositorySectionLayout::heightOf(row.kind));
        default:
            return {};
    }
}

// Whether it tells something else, and does not only look otherwise because it was opened, is being
// worked on or is searched for.
bool tellsTheSame(const Row& one, const Row& other) {
    return one.title == other.title && one.status == other.status &&
           one.countLabel == other.countLabel && one.symbol == other.symbol &&
           one.metadata == other.metadata;
}

struct RowReference {
    const Row* row;
    bool operator==(const RowReference& other) const { return *row == *other.row; }
};

}  // namespace

void RowModel::setRows(const std::vector<Row>& rows) {
    std::vector<RowReference> before;
    for (const Held& held : rows_) before.push_back({&held.row});
    std::vector<RowReference> after;
    for (const Row& row : rows) after.push_back({&row});
    const std::vector<ListEdit> edits = listEdits(
        before, after, [](RowReference each) -> const std::string& { return each.row->id; });
    replay(
        rows_, edits,
        [&](std::size_t index) {
            return Held{.key = nextKey_++, .changes = 0, .row = rows[index]};
        },
        [&](Held& held, std::size_t index) {
            if (!tellsTheSame(held.row, rows[index])) ++held.changes;
            held.row = rows[index];
        });
}

const Row* RowModel::rowOf(int key) const {
    const auto found = std::ranges::find(rows_, key, &Held::key);
    return found == rows_.end() ? nullptr : &found->row;
}

double RowModel::topOf(int index) const {
    double top = 0;
    for (int above = 0; above < index && above < rowCount(); ++above) top += heightOf(above);
    return top;
}

double RowModel::heightOf(int index) const {
    return RepositorySectionLayout::heightOf(rows_[static_cast<std::size_t>(index)].row.kind);
}

int RowModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant RowModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= rows_.size()) return {};
    if (role == Role::rowKey) return rows_[row].key;
    if (role == Role::changes) return rows_[row].changes;
    return valueOf(rows_[row].row, role);
}

QHash<int, QByteArray> RowModel::roleNames() const {
    return {{rowKey, "rowKey"},
            {kind, "kind"},
            {depth, "depth"},
            {chevron, "chevron"},
            {symbol, "symbol"},
            {symbolColor, "symbolColor"},
            {isLoading, "isLoading"},
            {status, "status"},
            {statusColor, "statusColor"},
            {reference, "reference"},
            {title, "title"},
            {countLabel, "countLabel"},
            {isTitleSecondary, "isTitleSecondary"},
            {isMonospaced, "isMonospaced"},
            {isElidedInMiddle, "isElidedInMiddle"},
            {isTitleHighlighted, "isTitleHighlighted"},
            {metaStatus, "metaStatus"},
            {metaStatusColor, "metaStatusColor"},
            {metaLabels, "metaLabels"},
            {help, "help"},
            {isClickable, "isClickable"},
            {opensByReference, "opensByReference"},
            {clickHelp, "clickHelp"},
            {actions, "actions"},
            {accessibleName, "accessibleName"},
            {rowHeight, "rowHeight"},
            {changes, "changes"}};
}

}  // namespace tarnbeck
