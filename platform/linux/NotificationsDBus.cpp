#include "platform/linux/NotificationsDBus.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace orvalen {
namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");

/// A server that is started for us needs a moment; one that takes longer than this does not answer at all.
constexpr int patienceMilliseconds = 5000;

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString withoutMarkup(QString body)
{
    return body.replace('&', "&amp;").replace('<', "&lt;").replace('>', "&gt;");
}

} // namespace

NotificationsDBus::NotificationsDBus(const QString &applicationId, std::function<QDBusConnection()> bus)
    : applicationId(applicationId), bus(std::move(bus))
{
}

void NotificationsDBus::post(std::string_view title, std::string_view message)
{
    waiting = Note{text(title), text(message)};
    if (!connection)
        connectToBus();
    if (!isAsking)
        askCapabilities();
}

void NotificationsDBus::connectToBus()
{
    connection = bus();
    // From any sender: naming the service would make Qt ask the bus who that is, and wait. isOurs() looks instead.
    connection->connect({}, path, service, "ActivationToken", this, SLOT(takeToken(uint, QString, QDBusMessage)));
    connection->connect({}, path, service, "ActionInvoked", this, SLOT(takeAction(uint, QString, QDBusMessage)));
}

void NotificationsDBus::call(const QDBusMessage &question, Answer answer)
{
    auto *watcher = new QDBusPendingCallWatcher(connection->asyncCall(question, patienceMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, answer] {
        watcher->deleteLater();
        (this->*answer)(watcher->reply());
    });
}

void NotificationsDBus::askCapabilities()
{
    isAsking = true;
    call(QDBusMessage::createMethodCall(service, path, service, "GetCapabilities"), &NotificationsDBus::notify);
}

void NotificationsDBus::notify(const QDBusMessage &capabilities)
{
    // The server may be another one than last time: it has its own numbers and its own abilities.
    if (capabilities.type() != QDBusMessage::ReplyMessage || capabilities.service() != server)
        lastId = 0;
    const bool hasMarkup = capabilities.arguments().value(0).toStringList().contains("body-markup");

    const Note note = std::exchange(waiting, std::nullopt).value_or(Note{});
    const QVariantMap hints = {
        {"desktop-entry", applicationId},
        {"urgency", QVariant::fromValue(uchar(1))},
        {"category", "device"},
        {"suppress-sound", true}, // The chime is ours.
    };
    auto question = QDBusMessage::createMethodCall(service, path, service, "Notify");
    question.setArguments({"Orvalen", lastId, applicationId, note.title,
                           hasMarkup ? withoutMarkup(note.message) : note.message,
                           QStringList{"default", "Open Orvalen"}, hints, -1});
    call(question, &NotificationsDBus::remember);
}

void NotificationsDBus::remember(const QDBusMessage &notified)
{
    isAsking = false;
    if (notified.type() == QDBusMessage::ReplyMessage) {
        server = notified.service();
        lastId = notified.arguments().value(0).toUInt();
    }
    if (waiting)
        askCapabilities();
}

void NotificationsDBus::takeToken(uint id, const QString &token, const QDBusMessage &signal)
{
    if (isOurs(id, signal))
        clickedToken = token;
}

void NotificationsDBus::takeAction(uint id, const QString &action, const QDBusMessage &signal)
{
    if (!isOurs(id, signal) || action != "default")
        return;
    const QString token = std::exchange(clickedToken, {});
    if (onClicked)
        onClicked(token.toStdString());
}

bool NotificationsDBus::isOurs(uint id, const QDBusMessage &signal) const
{
    return id != 0 && id == lastId && signal.service() == server;
}

} // namespace orvalen
