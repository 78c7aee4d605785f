#include "platform/qt/ColorSchemePortal.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace orvalen {

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto colorScheme = QStringLiteral("color-scheme");

// `Read` answers with a variant in a variant, the signal with a single one.
unsigned unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt();
}

} // namespace

ColorSchemePortal::ColorSchemePortal(std::function<QDBusConnection()> bus) : bus(std::move(bus))
{
    qRegisterMetaType<QDBusVariant>(); // else the slot's signature is unknown and connecting fails
}

void ColorSchemePortal::follow(Receive receive)
{
    followers.push_back(std::move(receive));
    if (!connection) {
        connection = bus();
        connection->connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                            SLOT(settingChanged(QString, QString, QDBusVariant)));
    }
    ask();
}

void ColorSchemePortal::ask()
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    message << appearance << colorScheme;
    auto *watcher = new QDBusPendingCallWatcher(connection->asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            tell(reply.value().variant());
    });
}

void ColorSchemePortal::settingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    if (group == appearance && key == colorScheme)
        tell(value.variant());
}

void ColorSchemePortal::tell(const QVariant &preference)
{
    for (const auto &receive : followers)
        receive(unwrapped(preference));
}

} // namespace orvalen
