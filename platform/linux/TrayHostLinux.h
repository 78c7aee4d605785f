#pragma once

#include <QDBusConnection>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/qt/TrayHost.h"

namespace orvalen {

class StatusNotifierWatch;
class XEmbedTrayWatch;

/// The two kinds of tray on a Linux desktop: panels on the session bus, and X11 trays where there is no such panel.
class TrayHostLinux : public TrayHost
{
public:
    /// Looks for a tray when somebody waits for one.
    explicit TrayHostLinux(std::function<QDBusConnection()> bus = QDBusConnection::sessionBus);
    ~TrayHostLinux() override;

    void whenPresent(std::function<void()> then) override;

private:
    void look();
    void present();

    std::function<QDBusConnection()> bus;
    std::vector<std::function<void()>> waiting;
    std::unique_ptr<StatusNotifierWatch> panels;
    std::unique_ptr<XEmbedTrayWatch> trays;
    std::optional<bool> hasPanel; ///< std::nullopt: the bus has not answered yet.
};

} // namespace orvalen
