#include "SectionAdapter.h"

#include <utility>

#include "ActionValue.h"
#include "QtText.h"

namespace tarnbeck {

namespace {

QVariantList badgeValues(const std::vector<StatusBadge>& badges) {
    QVariantList values;
    for (const StatusBadge& badge : badges) {
        values.append(QVariantMap{{"title", qtText(badge.title)},
                                  {"value", qtText(badge.value)},
                                  {"color", qtText(badge.color)}});
    }
    return values;
}

}  // namespace

SectionAdapter::SectionAdapter(MainView& view, std::string path, QObject* parent)
    : QObject(parent),
      view_(view),
      path_(std::move(path)),
      content_(std::make_shared<const SectionContent>()) {}

void SectionAdapter::refresh(std::uint64_t revision) {
    if (revision == revision_) return;
    revision_ = revision;
    const auto content = view_.section(path_);
    if (!content) return;
    const bool isHeaderChanged = !(content->header == content_->header);
    content_ = content;
    rows_.setRows(content_->rows);
    if (!isHeaderChanged) return;
    actions_ = actionValues(content_->header.actions);
    badges_ = badgeValues(content_->header.badges);
    Q_EMIT headerChanged();
}

QString SectionAdapter::statusIcon() const {
    return qtText(header().statusIcon);
}
QString SectionAdapter::statusColor() const {
    return qtText(header().statusColor);
}
QString SectionAdapter::name() const {
    return qtText(header().name);
}
QString SectionAdapter::summary() const {
    return qtTexts(header().summaryParts).join(QStringLiteral(" · "));
}
QString SectionAdapter::accessibleName() const {
    return qtText(header().accessibleName);
}

void SectionAdapter::toggle() {
    view_.toggleSection(path_);
}

void SectionAdapter::click(int rowKey) {
    const Row* row = rows_.rowOf(rowKey);
    if (!row || !row->click) return;
    const std::string rowId = row->id;  // the row may change while it acts
    view_.perform({.path = path_, .rowId = rowId, .kind = row->click->kind});
}

void SectionAdapter::perform(int rowKey, int kind, int occurrence) {
    const Row* row = rows_.rowOf(rowKey);
    if (!row) return;
    const std::string rowId = row->id;
    view_.perform({.path = path_,
                   .rowId = rowId,
                   .kind = static_cast<RowActionKind>(kind),
                   .occurrence = static_cast<std::size_t>(occurrence)});
}

void SectionAdapter::performHeader(int kind, int occurrence) {
    view_.perform({.path = path_,
                   .rowId = {},
                   .kind = static_cast<RowActionKind>(kind),
                   .occurrence = static_cast<std::size_t>(occurrence)});
}

}  // namespace tarnbeck
