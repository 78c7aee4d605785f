#pragma once

#include "platform/Processors.h"

namespace orvalen {

/// The processor cores that the calling thread, and so every thread that it starts, may run on.
class ProcessorsAffinity : public Processors
{
public:
    [[nodiscard]] int activeCount() override;
};

} // namespace orvalen
