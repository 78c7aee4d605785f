#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

#include "platform/ColorScheme.h"

namespace orvalen {

/// The preference as the desktop portal's settings give it.
class ColorSchemePortal : public QObject, public ColorScheme
{
    Q_OBJECT

public:
    /// The bus is connected to when somebody follows.
    explicit ColorSchemePortal(std::function<QDBusConnection()> bus = QDBusConnection::sessionBus);

    void follow(Receive receive) override;

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void tell(const QVariant &preference);

    std::function<QDBusConnection()> bus;
    std::optional<QDBusConnection> connection;
    std::vector<Receive> followers;
};

} // namespace orvalen
