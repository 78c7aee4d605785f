#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <vector>

#include "platform/ColorScheme.h"

namespace orvalen {

/// The preference as the desktop portal's settings give it.
class ColorSchemePortal : public QObject, public ColorScheme
{
    Q_OBJECT

public:
    explicit ColorSchemePortal(QDBusConnection bus = QDBusConnection::sessionBus());

    void follow(Receive receive) override;

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void tell(const QVariant &preference);

    QDBusConnection bus;
    std::vector<Receive> followers;
    bool subscribed = false;
};

} // namespace orvalen
