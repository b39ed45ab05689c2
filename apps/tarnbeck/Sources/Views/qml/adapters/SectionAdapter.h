// One repository's section as QML binds to it. Main thread; lives as long as the model.
#pragma once

#include <QObject>
#include <QVariantList>
#include <cstdint>
#include <memory>
#include <string>

#include <QtQml/qqmlregistration.h>

#include "MainView.h"
#include "RowModel.h"

namespace tarnbeck {

class SectionAdapter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to its window")
    Q_PROPERTY(bool canCollapse READ canCollapse NOTIFY headerChanged)
    Q_PROPERTY(bool isExpanded READ isExpanded NOTIFY headerChanged)
    Q_PROPERTY(QString statusIcon READ statusIcon NOTIFY headerChanged)
    Q_PROPERTY(QString statusColor READ statusColor NOTIFY headerChanged)
    Q_PROPERTY(QString name READ name NOTIFY headerChanged)
    Q_PROPERTY(bool isNameHighlighted READ isNameHighlighted NOTIFY headerChanged)
    Q_PROPERTY(QString summary READ summary NOTIFY headerChanged)
    Q_PROPERTY(QVariantList actions READ actions NOTIFY headerChanged)
    Q_PROPERTY(QVariantList badges READ badges NOTIFY headerChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY headerChanged)
    Q_PROPERTY(tarnbeck::RowModel* rows READ rows CONSTANT)
    // Where the user scrolled its column to; kept while the column is out of sight.
    Q_PROPERTY(double scrollPosition MEMBER scrollPosition_ NOTIFY scrollPositionChanged)

  public:
    SectionAdapter(MainView& view, std::string path, QObject* parent);

    const std::string& path() const { return path_; }
    // Takes over what the view shows now, if that has changed since the last time.
    void refresh(std::uint64_t revision);

    // It is not listed now; when it comes back, what it shows is asked for anew. (What draws it may
    // still be there for a while.)
    void rest() { revision_ = 0; }

    bool canCollapse() const { return header().canCollapse; }
    bool isExpanded() const { return header().isExpanded; }
    QString statusIcon() const;
    QString statusColor() const;
    QString name() const;
    bool isNameHighlighted() const { return header().isNameHighlighted; }
    QString summary() const;
    QVariantList actions() const { return actions_; }
    QVariantList badges() const { return badges_; }
    QString accessibleName() const;
    RowModel* rows() { return &rows_; }

    Q_INVOKABLE void toggle();
    // What the row's own click does.
    Q_INVOKABLE void click(int rowKey);
    Q_INVOKABLE void perform(int rowKey, int kind, int occurrence);
    Q_INVOKABLE void performHeader(int kind, int occurrence);

  Q_SIGNALS:
    void headerChanged();
    void scrollPositionChanged();

  private:
    const SectionHeader& header() const { return content_->header; }

    MainView& view_;
    const std::string path_;
    std::uint64_t revision_ = 0;
    std::shared_ptr<const SectionContent> content_;  // never null
    QVariantList actions_;
    QVariantList badges_;
    RowModel rows_;
    double scrollPosition_ = 0;
};

}  // namespace tarnbeck
