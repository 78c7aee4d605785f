#include "platform/linux/TrayHostLinux.h"

#include <QMetaObject>

#include <utility>

#include "platform/linux/StatusNotifierWatch.h"
#include "platform/linux/XEmbedTrayWatch.h"

namespace orvalen {

TrayHostLinux::TrayHostLinux(std::function<QDBusConnection()> bus) : bus(std::move(bus)) {}

TrayHostLinux::~TrayHostLinux() = default;

void TrayHostLinux::whenPresent(std::function<void()> then)
{
    waiting.push_back(std::move(then));
    if (panels)
        return;
    hasPanel.reset();
    trays = std::make_unique<XEmbedTrayWatch>([this] { look(); });
    panels = std::make_unique<StatusNotifierWatch>(bus(), [this](bool isThere) {
        hasPanel = isThere;
        look();
    });
}

void TrayHostLinux::look()
{
    if (hasPanel && (*hasPanel || trays->isThere())) // not before the bus has answered: panels come first
        QMetaObject::invokeMethod(
            panels.get(), [this] { present(); }, Qt::QueuedConnection); // this is their own call
}

void TrayHostLinux::present()
{
    trays.reset();
    panels.reset();
    for (const auto &then : std::exchange(waiting, {}))
        then();
}

} // namespace orvalen
