#pragma once

#include "ui/kit/Ground.h"

namespace orvalen {

/// The right column: the short way to the offline mirror.
class RightSidebarUtilityView : public kit::Panel
{
    Q_OBJECT

public:
    explicit RightSidebarUtilityView(QWidget *parent = nullptr);

    static constexpr int columnWidth = 220;
};

} // namespace orvalen
