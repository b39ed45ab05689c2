#include "PortalSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>

namespace tarnbeck {

namespace {

const char* const service = "org.freedesktop.portal.Desktop";
const char* const path = "/org/freedesktop/portal/desktop";
const char* const interface = "org.freedesktop.portal.Settings";
const char* const appearanceGroup = "org.freedesktop.appearance";
const char* const colorSchemeKey = "color-scheme";

// An answer is wrapped in variants, once or twice.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

}  // namespace

PortalSettings::PortalSettings() {
    // Without a bus of the session the library would start one.
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question << QString::fromUtf8(appearanceGroup) << QString::fromUtf8(colorSchemeKey);
    answer_ = std::make_unique<QDBusPendingCallWatcher>(bus.asyncCall(question));
    connect(answer_.get(), &QDBusPendingCallWatcher::finished, this, [this] {
        const QDBusPendingReply<QDBusVariant> reply = *answer_;
        if (!reply.isError()) Q_EMIT colorSchemeTold(unwrapped(reply.value().variant()).toUInt());
    });
}

void PortalSettings::settingChanged(const QString& group, const QString& key,
                                    const QDBusVariant& value) {
    if (group == QLatin1String(appearanceGroup) && key == QLatin1String(colorSchemeKey)) {
        Q_EMIT colorSchemeTold(unwrapped(value.variant()).toUInt());
    }
}

}  // namespace tarnbeck
