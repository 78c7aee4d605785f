#pragma once

#include <QString>

#include <string>

#include "ui/kit/Shade.h"

namespace orvalen {

/// What is said for one of the maker's other services.
struct SponsoredAdItem
{
    const QString id;
    const QString title;
    const QString badge; ///< In capitals, a word or two.
    const QString description;
    const QString cta; ///< What the link says.
    const std::string url;
    const QString iconName; ///< A symbol's.
    const kit::Accent accentColor;
};

} // namespace orvalen
