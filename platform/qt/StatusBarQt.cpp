#include "platform/qt/StatusBarQt.h"

#include <utility>

#include "platform/qt/StatusItemQt.h"
#include "platform/qt/TrayHost.h"

namespace orvalen {

StatusBarQt::StatusBarQt(std::unique_ptr<TrayHost> tray, ColorScheme &scheme) : tray(std::move(tray)), scheme(scheme) {}

StatusBarQt::~StatusBarQt() = default;

std::unique_ptr<StatusItem> StatusBarQt::statusItemWithLength(double)
{
    return std::make_unique<StatusItemQt>(*tray, scheme);
}

} // namespace orvalen
