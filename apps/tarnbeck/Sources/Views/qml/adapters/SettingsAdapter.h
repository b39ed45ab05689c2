// The settings as QML binds to them. Main thread; owns its view.
#pragma once

#include <QObject>
#include <QVariantList>
#include <memory>

#include <QtQml/qqmlregistration.h>

#include "SettingsRowModel.h"
#include "SettingsView.h"

namespace tarnbeck {

class SettingsAdapter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to its window")
    Q_PROPERTY(QString sidebarTitle READ sidebarTitle CONSTANT)
    Q_PROPERTY(double sidebarWidth READ sidebarWidth CONSTANT)
    Q_PROPERTY(QString doneTitle READ doneTitle CONSTANT)
    Q_PROPERTY(QVariantList sidebar READ sidebar NOTIFY sidebarChanged)
    Q_PROPERTY(tarnbeck::SettingsRowModel* rows READ rows CONSTANT)

  public:
    explicit SettingsAdapter(std::unique_ptr<SettingsView> view);
    ~SettingsAdapter() override;

    QString sidebarTitle() const;
    double sidebarWidth() const { return view_->content().sidebarWidth; }
    QString doneTitle() const;
    QVariantList sidebar() const;
    SettingsRowModel* rows() { return &rows_; }

    Q_INVOKABLE void selectPane(int pane) { view_->selectPane(static_cast<SettingsPane>(pane)); }
    Q_INVOKABLE void press(int id) { view_->press(id); }
    Q_INVOKABLE void setOn(int id, bool isOn) { view_->setOn(id, isOn); }
    Q_INVOKABLE void choose(int id, int option) {
        view_->choose(id, static_cast<std::size_t>(option));
    }
    Q_INVOKABLE void setValue(int id, double value) { view_->setValue(id, value); }
    Q_INVOKABLE void finishSetting(int id) { view_->finishSetting(id); }
    Q_INVOKABLE void setText(int id, const QString& text);
    // Closes the window, when what QML is in the middle of has ended.
    Q_INVOKABLE void done();

  Q_SIGNALS:
    void sidebarChanged();

  private Q_SLOTS:
    void dismiss();

  private:
    void refresh();

    const std::unique_ptr<SettingsView> view_;
    std::vector<SettingsSidebarEntry> sidebar_;
    SettingsRowModel rows_;
    SettingsView::Observers::Token observation_;
};

}  // namespace tarnbeck
