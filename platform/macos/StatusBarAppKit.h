#pragma once

#include "platform/StatusBar.h"

namespace orvalen {

/// Items in the menu bar. A symbol that the system does not know leaves the title alone; symbols follow the menu bar's
/// shade.
class StatusBarAppKit : public StatusBar
{
public:
    [[nodiscard]] std::unique_ptr<StatusItem> statusItemWithLength(double length) override;
};

} // namespace orvalen
