#pragma once

#include "platform/GraphicsCopies.h"

namespace orvalen {

/// Graphics copies by Metal, in memory that processor and graphics share.
class GraphicsCopiesMetal : public GraphicsCopies
{
public:
    [[nodiscard]] std::unique_ptr<GraphicsQueue> openDefaultQueue() override;
};

} // namespace orvalen
