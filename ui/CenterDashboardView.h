#pragma once

#include <QHash>

#include "ui/WindowServices.h"
#include "ui/kit/Builders.h"

class QStackedLayout;

namespace orvalen::kit {
class TabButton;
}

namespace orvalen {

/// The centre column: who we are and how things stand, the tabs, and the chosen tab's content.
class CenterDashboardView : public kit::Panel
{
    Q_OBJECT

public:
    explicit CenterDashboardView(const WindowServices &services, QWidget *parent = nullptr);

    static constexpr int minimumColumnWidth = 420;

private:
    QWidget *header();
    QWidget *sleepToggle();
    QWidget *statusBadge();
    QWidget *tabBar();
    kit::TabButton *tabButton(const QString &title, int tag, const QString &icon);
    QWidget *content();

    void showTab(int tag);
    QWidget *makeTab(int tag);
    QWidget *dashboardHomeTab();
    void continueOrder(const QWidget &tab);

    WindowServices services;
    QStackedLayout *pages = nullptr;
    QHash<int, QWidget *> made; // tabs are made when they are first looked at
};

} // namespace orvalen
