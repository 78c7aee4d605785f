#pragma once

#include "ui/kit/Builders.h"

namespace orvalen {

class AppState;

/// The first tab: how warm the display is, the button that warms it, the switch that has it done, and four readings.
class DashboardHomeTab : public kit::Ground
{
    Q_OBJECT

public:
    explicit DashboardHomeTab(AppState &state, QWidget *parent = nullptr);

private:
    QWidget *temperaturePanel();
    QWidget *warmupButton();
    QWidget *protectionRow();
    QWidget *metrics();
    static QWidget *metricCard(const QString &title, const kit::Live<QString> &value, const kit::Live<QString> &icon,
                               const kit::Live<kit::Accent> &color);

    AppState &state;
};

} // namespace orvalen
