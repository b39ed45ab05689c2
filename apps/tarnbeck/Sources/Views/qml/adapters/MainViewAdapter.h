// The main view as QML binds to it. Main thread; owns its view.
#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <memory>

#include <QtQml/qqmlregistration.h>

#include "MainView.h"
#include "SectionListModel.h"

namespace tarnbeck {

class MainViewAdapter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to its window")
    Q_PROPERTY(bool hasStrip READ hasStrip NOTIFY hasStripChanged)
    Q_PROPERTY(QVariantMap strip READ strip NOTIFY stripChanged)
    // What of it never changes: its label, its prompt, its widths.
    Q_PROPERTY(QVariantMap stripTexts READ stripTexts CONSTANT)
    Q_PROPERTY(QStringList filters READ filters CONSTANT)
    Q_PROPERTY(QStringList domains READ domains CONSTANT)
    Q_PROPERTY(QString area READ area NOTIFY areaChanged)  // "empty", "noMatch", "list", "columns"
    Q_PROPERTY(QVariantMap areaTexts READ areaTexts NOTIFY areaChanged)
    Q_PROPERTY(QVariantList pills READ pills NOTIFY statusBarChanged)
    Q_PROPERTY(QVariantList detailPills READ detailPills NOTIFY statusBarChanged)
    Q_PROPERTY(QVariantList trailingDetails READ trailingDetails NOTIFY statusBarChanged)
    Q_PROPERTY(QVariantMap toast READ toast NOTIFY toastChanged)
    Q_PROPERTY(QVariantMap alert READ alert NOTIFY alertChanged)  // empty: there is none
    Q_PROPERTY(double backdropOpacity READ backdropOpacity NOTIFY backdropOpacityChanged)
    Q_PROPERTY(tarnbeck::SectionListModel* sections READ sections CONSTANT)

  public:
    explicit MainViewAdapter(std::unique_ptr<MainView> view);
    ~MainViewAdapter() override;

    MainView& view() { return *view_; }

    bool hasStrip() const { return shown_.strip.has_value(); }
    QVariantMap strip() const { return strip_; }
    QVariantMap stripTexts() const;
    QStringList filters() const;
    QStringList domains() const;
    QString area() const { return area_; }
    QVariantMap areaTexts() const { return areaTexts_; }
    QVariantList pills() const;
    QVariantList detailPills() const;
    QVariantList trailingDetails() const;
    QVariantMap toast() const;
    QVariantMap alert() const;
    double backdropOpacity() const { return shown_.backdropOpacity; }
    SectionListModel* sections() { return &sections_; }

    Q_INVOKABLE void toggleViewMode() { view_->toggleViewMode(); }
    Q_INVOKABLE void scan() { view_->scan(); }
    Q_INVOKABLE void chooseSort(int mode) { view_->chooseSort(static_cast<SortMode>(mode)); }
    Q_INVOKABLE void equalize() { view_->equalize(); }
    Q_INVOKABLE void toggleAwake() { view_->toggleAwake(); }
    Q_INVOKABLE void openSettings() { view_->openSettings(); }
    Q_INVOKABLE void chooseFilter(int mode) { view_->chooseFilter(static_cast<FilterMode>(mode)); }
    Q_INVOKABLE void chooseDomain(int mode) { view_->chooseDomain(static_cast<DomainMode>(mode)); }
    Q_INVOKABLE void setSearchText(const QString& text);
    Q_INVOKABLE void answerAlert(int button);
    Q_INVOKABLE void setVisible(bool visible) { view_->setVisible(visible); }

  Q_SIGNALS:
    void hasStripChanged();
    void stripChanged();
    void areaChanged();
    void statusBarChanged();
    void toastChanged();
    void alertChanged();
    void backdropOpacityChanged();
    // The columns are to show the first one.
    void splitViewReset();

  private:
    void refresh();
    void takeStrip();
    void takeArea();

    const std::unique_ptr<MainView> view_;
    MainViewContent shown_;
    QVariantMap strip_;
    QString area_;
    QVariantMap areaTexts_;
    SectionListModel sections_;
    MainView::Observers::Token observation_;
};

}  // namespace tarnbeck
