// The listed repositories as a model that changes entry by entry. In the columns all entries are
// rows of it, and the view makes those in sight; in the masonry it places them itself and has rows
// for those near the viewport only. Main thread.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <QtQml/qqmlregistration.h>

#include "EditedListModel.h"
#include "MainView.h"
#include "SectionAdapter.h"

namespace tarnbeck {

class SectionListModel : public EditedListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to its view")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    // Of each entry, in the columns; and of all entries together, in the masonry.
    Q_PROPERTY(double columnWidth READ columnWidth NOTIFY columnWidthChanged)
    Q_PROPERTY(double contentHeight READ contentHeight NOTIFY contentHeightChanged)

  public:
    explicit SectionListModel(MainView& view, QObject* parent = nullptr);
    ~SectionListModel() override;

    // Takes over what the view lists now; null: nothing.
    void setList(const SectionList* list);
    int count() const { return static_cast<int>(entries_.size()); }
    double columnWidth() const { return columnWidth_; }
    double contentHeight() const { return contentHeight_; }

    // The width that there is, and what of the masonry is in sight, in device-independent pixels.
    Q_INVOKABLE void setViewport(double width, double top, double height);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    void countChanged();
    void columnWidthChanged();
    void contentHeightChanged();

  private:
    struct Place {
        double x = 0;
        double y = 0;
        double width = 0;
        double height = 0;
        bool operator==(const Place&) const = default;
    };
    struct Shown {
        std::string path;
        std::uint64_t revision = 0;
        Place place;
        bool operator==(const Shown&) const = default;
    };
    void place();
    std::vector<Shown> inSight() const;
    void show(std::vector<Shown> shown);
    SectionAdapter* adapterOf(const Shown& shown) const;
    void restAdaptersOfGonePaths();

    MainView& view_;
    ViewMode mode_ = ViewMode::columns;
    std::vector<SectionList::Entry> entries_;
    std::vector<Place> places_;  // of the entries, in the masonry
    double columnWidth_ = 0;
    double contentHeight_ = 0;
    double viewportWidth_ = 0;
    double viewportTop_ = 0;
    double viewportHeight_ = 0;
    std::vector<Shown> shown_;  // the rows of the model
    mutable std::unordered_map<std::string, std::unique_ptr<SectionAdapter>> adapters_;
};

}  // namespace tarnbeck
