#include "platform/linux/StatusNotifierWatch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <utility>

namespace orvalen {

namespace {

const auto service = QStringLiteral("org.kde.StatusNotifierWatcher");
const auto path = QStringLiteral("/StatusNotifierWatcher");
const auto interface = service;

} // namespace

StatusNotifierWatch::StatusNotifierWatch(const QDBusConnection &bus, Receive receive)
    : bus(bus), watcher(service, bus, QDBusServiceWatcher::WatchForRegistration), receive(std::move(receive))
{
    connect(&watcher, &QDBusServiceWatcher::serviceRegistered, this, &StatusNotifierWatch::ask);
    // From whomever: naming the sender would mean to wait for the bus here.
    this->bus.connect(QString(), path, interface, QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(ask()));
    ask();
}

// There may be a watcher long before there is a panel to show anything, and Qt wants both.
void StatusNotifierWatch::ask()
{
    if (!bus.isConnected()) { // a call would never be answered
        QMetaObject::invokeMethod(
            this, [this] { receive(false); }, Qt::QueuedConnection);
        return;
    }
    auto question = QDBusMessage::createMethodCall(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                                   QStringLiteral("Get"));
    question << interface << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        receive(reply.isValid() && reply.value().variant().toBool());
    });
}

} // namespace orvalen
