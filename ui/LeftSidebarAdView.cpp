#include "ui/LeftSidebarAdView.h"

namespace orvalen {

LeftSidebarAdView::LeftSidebarAdView(QWidget *parent) : Panel(kit::neutral::panel, EdgeLine::trailing, parent)
{
    setFixedWidth(columnWidth);
}

} // namespace orvalen
