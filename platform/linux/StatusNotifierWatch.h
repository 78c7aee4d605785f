#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>

namespace orvalen {

/// Follows whether a panel that shows StatusNotifierItems is there. Asks without waiting.
class StatusNotifierWatch : public QObject
{
    Q_OBJECT

public:
    using Receive = std::function<void(bool isThere)>;

    /// `receive` hears each answer, the first one in any case, never from within this call.
    StatusNotifierWatch(const QDBusConnection &bus, Receive receive);

private Q_SLOTS:
    void ask();

private:
    QDBusConnection bus;
    QDBusServiceWatcher watcher;
    Receive receive;
};

} // namespace orvalen
