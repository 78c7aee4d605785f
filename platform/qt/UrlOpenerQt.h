#pragma once

#include "platform/UrlOpener.h"

namespace orvalen {

/// Opens addresses the way the desktop does. Needs a QGuiApplication.
class UrlOpenerQt : public UrlOpener
{
public:
    void open(std::string_view url) override;
};

} // namespace orvalen
