#pragma once

#include "ui/kit/Ground.h"

namespace orvalen {

/// The left column: what else the maker offers.
class LeftSidebarAdView : public kit::Panel
{
    Q_OBJECT

public:
    explicit LeftSidebarAdView(QWidget *parent = nullptr);

    static constexpr int columnWidth = 175;
};

} // namespace orvalen
