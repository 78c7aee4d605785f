#include "platform/linux/HostNameAvahi.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>

#include <unistd.h>

namespace orvalen {

namespace {

const auto service = QStringLiteral("org.freedesktop.Avahi");
const auto connectionName = QStringLiteral("orvalen-host-name"); // ours alone, so that it can be renewed

constexpr std::size_t longestName = 256; ///< Bytes with the end; a host name has fewer on every system.

/// The connection to the system bus; a new one if the bus was started anew since.
QDBusConnection systemBus()
{
    const QDBusConnection present(connectionName);
    if (present.isConnected())
        return present;
    QDBusConnection::disconnectFromBus(connectionName);
    return QDBusConnection::connectToBus(QDBusConnection::SystemBus, connectionName);
}

std::optional<std::string> announcedName(std::chrono::milliseconds patience)
{
    auto question = QDBusMessage::createMethodCall(service, QStringLiteral("/"), service + QStringLiteral(".Server"),
                                                   QStringLiteral("GetHostName"));
    question.setAutoStartService(false);
    const auto answer = systemBus().call(question, QDBus::Block, static_cast<int>(patience.count()));
    if (answer.type() != QDBusMessage::ReplyMessage)
        return std::nullopt;
    return answer.arguments().value(0).toString().toStdString();
}

} // namespace

HostNameAvahi::HostNameAvahi(std::chrono::milliseconds patience)
    : question([patience] { return announcedName(patience); }, patience)
{
}

std::optional<std::string> HostNameAvahi::multicastName()
{
    return question.ask().value_or(std::nullopt);
}

std::string HostNameAvahi::processName()
{
    char name[longestName] = {};
    return ::gethostname(name, sizeof name - 1) == 0 ? name : "";
}

} // namespace orvalen
