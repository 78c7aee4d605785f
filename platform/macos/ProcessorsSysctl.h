#pragma once

#include "platform/Processors.h"

namespace orvalen {

/// The cores that are powered and take threads, of every kind together: the kernel's "hw.activecpu".
class ProcessorsSysctl : public Processors
{
public:
    [[nodiscard]] int activeCount() override;
};

} // namespace orvalen
