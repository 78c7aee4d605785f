#pragma once

#include "platform/PowerSources.h"

namespace orvalen {

/// IOKit's power sources, in its order. What describes itself by anything but a dictionary with text for keys is left
/// out. A state that is no text and a capacity that is no whole number are absent.
///
/// The service belongs to every Mac: where it gives no list, or no description of a source in it, the process is
/// aborted.
class PowerSourcesIOKit : public PowerSources
{
public:
    [[nodiscard]] std::vector<PowerSource> list() override;
};

} // namespace orvalen
