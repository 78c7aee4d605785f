#pragma once

#include "platform/UrlOpener.h"

namespace orvalen {

/// Opens addresses as Qt does it on the system at hand; on macOS that is the workspace's own way. Wants the
/// application object.
class UrlOpenerQt : public UrlOpener
{
public:
    void open(std::string_view url) override;
};

} // namespace orvalen
