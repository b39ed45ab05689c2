#include "SectionListModel.h"

#include <QQmlEngine>
#include <algorithm>
#include <unordered_set>
#include <utility>

#include "MasonryLayout.h"

namespace tarnbeck {

namespace {

enum Role { section = Qt::UserRole, placeX, placeY, placeWidth, placeHeight };

// How far beyond the viewport the masonry is made.
constexpr double margin = 200;

}  // namespace

SectionListModel::SectionListModel(MainView& view, QObject* parent)
    : EditedListModel(parent), view_(view) {}

SectionListModel::~SectionListModel() = default;

void SectionListModel::setList(const SectionList* list) {
    mode_ = list ? list->mode : ViewMode::columns;
    entries_ = list ? list->entries : std::vector<SectionList::Entry>();
    place();
    show(inSight());
    restAdaptersOfGonePaths();
    Q_EMIT countChanged();
}

void SectionListModel::setViewport(double width, double top, double height) {
    const bool isWidthChanged = width != viewportWidth_;
    viewportWidth_ = width;
    viewportTop_ = top;
    viewportHeight_ = height;
    if (isWidthChanged) place();
    if (mode_ == ViewMode::list) show(inSight());
}

void SectionListModel::place() {
    places_.clear();
    double height = 0;
    if (mode_ == ViewMode::list && viewportWidth_ > 0) {
        const auto layout = repoListLayout.measuredLayout(
            viewportWidth_, entries_.size(), [this](std::size_t index, double /*columnWidth*/) {
                return view_.sectionHeight(entries_[index].path);
            });
        for (const auto& placement : layout.placements) {
            places_.push_back({.x = placement.x,
                               .y = placement.y,
                               .width = layout.columnWidth,
                               .height = placement.height});
        }
        height = layout.totalHeight;
    }
    if (std::exchange(contentHeight_, height) != height) Q_EMIT contentHeightChanged();
    const double column = ColumnRowLayout::of(viewportWidth_, entries_.size()).columnWidth;
    if (std::exchange(columnWidth_, column) != column) Q_EMIT columnWidthChanged();
}

std::vector<SectionListModel::Shown> SectionListModel::inSight() const {
    std::vector<Shown> result;
    if (mode_ == ViewMode::columns) {
        for (const SectionList::Entry& entry : entries_) {
            result.push_back({.path = entry.path, .revision = entry.revision});
        }
        return result;
    }
    for (std::size_t index = 0; index < places_.size(); ++index) {
        const Place& place = places_[index];
        if (place.y + place.height < viewportTop_ - margin) continue;
        if (place.y > viewportTop_ + viewportHeight_ + margin) continue;
        result.push_back(
            {.path = entries_[index].path, .revision = entries_[index].revision, .place = place});
    }
    return result;
}

void SectionListModel::show(std::vector<Shown> shown) {
    const std::vector<ListEdit> edits = listEdits(shown_, shown, &Shown::path);
    const auto refresh = [this](const Shown& each) {
        const auto adapter = adapters_.find(each.path);
        if (adapter != adapters_.end()) adapter->second->refresh(each.revision);
    };
    replay(
        shown_, edits, [&](std::size_t index) { return shown[index]; },
        [&](Shown& present, std::size_t index) {
            present = shown[index];
            refresh(present);
        });
}

SectionAdapter* SectionListModel::adapterOf(const Shown& shown) const {
    auto& adapter = adapters_[shown.path];
    if (!adapter) {
        adapter = std::make_unique<SectionAdapter>(view_, shown.path, nullptr);
        QQmlEngine::setObjectOwnership(adapter.get(), QQmlEngine::CppOwnership);
    }
    adapter->refresh(shown.revision);
    return adapter.get();
}

// Their delegates may still be there for a while, and the paths may come back.
void SectionListModel::restAdaptersOfGonePaths() {
    std::unordered_set<std::string_view> present;
    for (const SectionList::Entry& entry : entries_) present.insert(entry.path);
    for (const auto& [path, adapter] : adapters_) {
        if (!present.contains(path)) adapter->rest();
    }
}

int SectionListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

QVariant SectionListModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= shown_.size()) return {};
    const Shown& shown = shown_[row];
    switch (role) {
        case section:
            return QVariant::fromValue(adapterOf(shown));
        case placeX:
            return shown.place.x;
        case placeY:
            return shown.place.y;
        case placeWidth:
            return shown.place.width;
        case placeHeight:
            return shown.place.height;
        default:
            return {};
    }
}

QHash<int, QByteArray> SectionListModel::roleNames() const {
    return {{section, "section"},
            {placeX, "placeX"},
            {placeY, "placeY"},
            {placeWidth, "placeWidth"},
            {placeHeight, "placeHeight"}};
}

}  // namespace tarnbeck
