// The settings portal of the freedesktop.org desktops (org.freedesktop.portal.Settings): what it
// says of the appearance. Main thread.
#pragma once

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <memory>

namespace tarnbeck {

class PortalSettings : public QObject {
    Q_OBJECT

  public:
    // Asks the portal where there is one, without waiting for it.
    PortalSettings();

  Q_SIGNALS:
    // 1 is dark, 2 is light, and 0 leaves it to the application.
    void colorSchemeTold(unsigned int scheme);

  private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

  private:
    std::unique_ptr<QDBusPendingCallWatcher> answer_;  // to the first question
};

}  // namespace tarnbeck
