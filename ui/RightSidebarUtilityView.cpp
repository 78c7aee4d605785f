#include "ui/RightSidebarUtilityView.h"

namespace orvalen {

RightSidebarUtilityView::RightSidebarUtilityView(QWidget *parent)
    : Panel(kit::neutral::panel, EdgeLine::leading, parent)
{
    setFixedWidth(columnWidth);
}

} // namespace orvalen
