#include "ui/MainView.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QShortcut>

#include "ui/CenterDashboardView.h"
#include "ui/LeftSidebarAdView.h"
#include "ui/RightSidebarUtilityView.h"
#include "ui/WindowServices.h"
#include "ui/kit/Accessibility.h"
#include "ui/kit/Builders.h"
#include "ui/kit/FocusRing.h"
#include "ui/kit/Theme.h"

namespace orvalen {

namespace {

constexpr QSize smallestRow{780, 560};
constexpr int smallestColumns =
    LeftSidebarAdView::columnWidth + CenterDashboardView::minimumColumnWidth + RightSidebarUtilityView::columnWidth;
constexpr QSize usualSize{1000, 680};

} // namespace

MainView::MainView(const WindowServices &services, QWidget *parent) : QWidget(parent), theme(new kit::Theme(*this))
{
    kit::installAccessibility(); // before anybody can have asked who this is
    setWindowTitle(tr("Orvalen"));
    setMinimumSize(smallestRow.expandedTo({smallestColumns, 0}));
    resize(usualSize);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(new LeftSidebarAdView(services.urls));
    row->addWidget(new CenterDashboardView(services), 1);
    row->addWidget(new RightSidebarUtilityView(services.webServer, services.usbManager, services.urls));

    new kit::FocusRing(*this);
    setFocus(); // no control has the keyboard before it is asked for
    auto *quit = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), this);
    quit->setContext(Qt::ApplicationShortcut);
    connect(quit, &QShortcut::activated, qApp, &QCoreApplication::quit);
}

void MainView::followColorScheme(ColorScheme &scheme)
{
    theme->follow(scheme);
}

// Some desktops keep a minimized window as if it were shown, and it would be painted for nobody.
void MainView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        setUpdatesEnabled(!isMinimized());
}

} // namespace orvalen
