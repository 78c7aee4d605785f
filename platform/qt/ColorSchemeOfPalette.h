#pragma once

#include "platform/ColorScheme.h"

namespace orvalen {

/// For systems whose colours Qt itself keeps in the application's palette, changes included: nothing is left to tell.
class ColorSchemeOfPalette : public ColorScheme
{
public:
    void follow(Receive receive) override;
};

} // namespace orvalen
