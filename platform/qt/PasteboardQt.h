#pragma once

#include "platform/Pasteboard.h"

namespace orvalen {

/// The clipboard as Qt gives it. Wants the application object.
class PasteboardQt : public Pasteboard
{
public:
    void setText(std::string_view text) override;
};

} // namespace orvalen
