#include "ui/CenterDashboardView.h"

#include <QStackedLayout>

#include "core/AppState.h"
#include "core/MakerSite.h"
#include "platform/UrlOpener.h"
#include "system/CaffeineManager.h"
#include "ui/DashboardHomeTab.h"
#include "ui/DashboardRules.h"
#include "ui/DiagnosticsView.h"
#include "ui/MultiCloneView.h"
#include "ui/QuenmarkLogo.h"
#include "ui/SettingsView.h"
#include "ui/ToolsView.h"
#include "ui/kit/ScrollArea.h"
#include "ui/kit/TabBar.h"
#include "ui/kit/TabButton.h"

namespace orvalen {

using namespace kit;

namespace {

constexpr int side = 16;
constexpr int titlesBesideSymbolsFrom = 580; // width of the column

// The numbers that `selectedTab` has for the tabs.
enum Tab
{
    homeTab = 0,
    diagnosticsTab = 1,
    toolsTab = 2,
    settingsTab = 3,
    cloneTab = 4,
};

} // namespace

CenterDashboardView::CenterDashboardView(const WindowServices &services, QWidget *parent)
    : Panel(neutral::window, EdgeLine::none, parent), services(services)
{
    setMinimumWidth(minimumColumnWidth);
    vStackIn(*this, {header(), tabBar(), hairline(), filling(content())}).spacing(0);
    Live<int>(services.state.selectedTab).follow(*this, [this](int tag) { showTab(tag); });
}

QWidget *CenterDashboardView::header()
{
    return hStack({
                      Element(logoView(loadQuenmarkLogo(), 28), 0, Qt::AlignTop),
                      vStack({
                                 text(tr("Orvalen")).size(15).weight(QFont::Bold),
                                 link(tr("Quenmark Technologies"), [this] { services.urls.open(makerSite); })
                                     .size(10)
                                     .atTop(),
                             })
                          .spacing(0),
                      spacer(),
                      Element(sleepToggle(), 0, Qt::AlignTop),
                      Element(statusBadge(), 0, Qt::AlignTop),
                  })
        .spacing(10)
        .padding(side, 14, side, 0);
}

QWidget *CenterDashboardView::sleepToggle()
{
    return symbolToggle({.off = "cup.and.saucer", .on = "cup.and.saucer.fill"}, tr("Prevent sleep"),
                        services.caffeine.isActive, [this] { services.caffeine.toggle(); });
}

QWidget *CenterDashboardView::statusBadge()
{
    auto &state = services.state;
    return kit::statusBadge({state.isWarmingUp, state.targetTemp, state.thermalData, DashboardRules::statusWord},
                            {state.isWarmingUp, state.targetTemp, state.thermalData, DashboardRules::statusAccent});
}

QWidget *CenterDashboardView::tabBar()
{
    auto *bar = new TabBar(
        {
            tabButton(tr("Dashboard"), homeTab, "gauge.medium"),
            tabButton(tr("Screen Clone"), cloneTab, "rectangle.on.rectangle.angled"),
            tabButton(tr("Diagnostics"), diagnosticsTab, "waveform.path.ecg"),
            tabButton(tr("Power & Tools"), toolsTab, "hammer.fill"),
            tabButton(tr("Settings"), settingsTab, "gearshape.fill"),
        },
        titlesBesideSymbolsFrom - 2 * side);
    return vStack({bar}).padding(side, 0, side, 10);
}

TabButton *CenterDashboardView::tabButton(const QString &title, int tag, const QString &icon)
{
    auto *button = new TabButton(title, icon);
    connect(button, &QAbstractButton::clicked, this, [this, tag] { services.state.selectedTab = tag; });
    Live<bool>(services.state.selectedTab, [tag](int selected) {
        return selected == tag;
    }).follow(*button, [button](bool selected) { button->setSelected(selected); });
    return button;
}

QWidget *CenterDashboardView::content()
{
    auto *area = new QWidget;
    pages = new QStackedLayout(area);
    pages->addWidget(new QWidget); // what a number that is no tab's shows
    return area;
}

void CenterDashboardView::showTab(int tag)
{
    if (!made.contains(tag)) {
        auto *tab = makeTab(tag);
        if (!tab) {
            pages->setCurrentIndex(0);
            return;
        }
        if (tab->layout())
            tab->layout()->setContentsMargins(side, side, side, side);
        made[tag] = new ScrollArea(tab);
        pages->addWidget(made[tag]);
        continueOrder(*tab);
    }
    pages->setCurrentWidget(made[tag]);
}

// What is made late would come last for the Tab key, after the columns beside this one.
void CenterDashboardView::continueOrder(const QWidget &tab)
{
    QWidget *previous = findChildren<TabButton *>().back();
    for (auto *widget : tab.findChildren<QWidget *>()) {
        if (widget->focusPolicy() == Qt::NoFocus)
            continue; // else also what only a click reaches: Tab goes on from there
        setTabOrder(previous, widget);
        previous = widget;
    }
}

QWidget *CenterDashboardView::makeTab(int tag)
{
    switch (tag) {
    case homeTab:
        return dashboardHomeTab();
    case diagnosticsTab:
        return new DiagnosticsView(services.state, services.report);
    case toolsTab:
        return new ToolsView(services.urls);
    case settingsTab:
        return new SettingsView(services.state, services.urls);
    case cloneTab:
        return new MultiCloneView(services.webServer, services.usbManager);
    default:
        return nullptr;
    }
}

QWidget *CenterDashboardView::dashboardHomeTab()
{
    return new DashboardHomeTab(services.state);
}

} // namespace orvalen
