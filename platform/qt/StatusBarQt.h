#pragma once

#include "platform/StatusBar.h"

namespace orvalen {

class ColorScheme;
class TrayHost;

/// The desktop's tray. Its items are StatusItemQt.
class StatusBarQt : public StatusBar
{
public:
    /// `scheme` must outlive it. It must outlive its items.
    StatusBarQt(std::unique_ptr<TrayHost> tray, ColorScheme &scheme);
    ~StatusBarQt() override;

    /// Trays give each item a square, whatever the length.
    [[nodiscard]] std::unique_ptr<StatusItem> statusItemWithLength(double length) override;

private:
    std::unique_ptr<TrayHost> tray;
    ColorScheme &scheme;
};

} // namespace orvalen
