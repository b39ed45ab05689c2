#include "SettingsAdapter.h"

#include <QMetaObject>
#include <utility>

#include "QtText.h"

namespace tarnbeck {

SettingsAdapter::SettingsAdapter(std::unique_ptr<SettingsView> view) : view_(std::move(view)) {
    observation_ = view_->observe([this] { refresh(); });
    refresh();
}

SettingsAdapter::~SettingsAdapter() = default;

void SettingsAdapter::refresh() {
    rows_.setCards(view_->content().cards);
    if (sidebar_ == view_->content().sidebar) return;
    sidebar_ = view_->content().sidebar;
    Q_EMIT sidebarChanged();
}

QString SettingsAdapter::sidebarTitle() const {
    return qtText(view_->content().sidebarTitle);
}
QString SettingsAdapter::doneTitle() const {
    return qtText(view_->content().doneTitle);
}

QVariantList SettingsAdapter::sidebar() const {
    QVariantList values;
    for (const SettingsSidebarEntry& entry : sidebar_) {
        values.append(QVariantMap{{"pane", static_cast<int>(entry.pane)},
                                  {"title", qtText(entry.title)},
                                  {"subtitle", qtText(entry.subtitle)},
                                  {"symbol", qtText(entry.symbol)},
                                  {"isSelected", entry.isSelected}});
    }
    return values;
}

void SettingsAdapter::setText(int id, const QString& text) {
    view_->setText(id, utf8Text(text));
}

void SettingsAdapter::done() {
    QMetaObject::invokeMethod(this, "dismiss", Qt::QueuedConnection);
}

void SettingsAdapter::dismiss() {
    view_->done();
}

}  // namespace tarnbeck
