#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <string>

#include "platform/Notifications.h"

class QDBusPendingCall;

namespace orvalen {

/// Notifications by org.freedesktop.Notifications. A new one takes the place of our last one.
///
/// One question is under way at a time; what is posted meanwhile waits for its answer, and of several that wait the
/// last one alone is shown, as it would replace the others at once. Main thread only, where the Qt event loop runs.
class NotificationsDBus : public QObject, public Notifications
{
    Q_OBJECT

public:
    /// `applicationId` names the desktop entry and the icon. The bus is asked at the first notification.
    explicit NotificationsDBus(const QString &applicationId,
                               std::function<QDBusConnection()> bus = QDBusConnection::sessionBus);

    void post(std::string_view title, std::string_view message) override;

    /// Called when somebody clicks our notification: open the window. `activationToken` is what the compositor wants to
    /// see before it lets a window come to the front; empty where there is none.
    std::function<void(const std::string &activationToken)> onClicked;

private Q_SLOTS:
    void takeToken(uint id, const QString &token, const QDBusMessage &signal);
    void takeAction(uint id, const QString &action, const QDBusMessage &signal);

private:
    struct Note
    {
        QString title;
        QString message;
    };

    using Answer = void (NotificationsDBus::*)(const QDBusMessage &);

    void connectToBus();
    void call(const QDBusMessage &question, Answer answer);
    void askCapabilities();
    void notify(const QDBusMessage &capabilities);
    void remember(const QDBusMessage &notified);
    [[nodiscard]] bool isOurs(uint id, const QDBusMessage &signal) const;

    QString applicationId;
    std::function<QDBusConnection()> bus;
    std::optional<QDBusConnection> connection;
    std::optional<Note> waiting;
    bool isAsking = false;
    QString server;       ///< The unique name of the one that shows our notification.
    uint lastId = 0;      ///< What it calls that notification; 0 for none.
    QString clickedToken; ///< Comes just before the click that it belongs to.
};

} // namespace orvalen
