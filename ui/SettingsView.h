#pragma once

#include "ui/kit/Builders.h"

namespace orvalen {

class AppState;
class UrlOpener;

/// The tab "Settings". Every change counts at once; the state keeps it.
class SettingsView : public kit::Ground
{
    Q_OBJECT

public:
    SettingsView(AppState &state, UrlOpener &urls, QWidget *parent = nullptr);

private:
    QWidget *automationsCard();
    QWidget *hotKeyCard();
    QWidget *targetTemperatureCard();
    QWidget *idleTimeoutCard();
    QWidget *aboutCard();
    static QWidget *sliderCard(const QString &heading, Published<double> &setting, const kit::SliderScale &scale,
                               const kit::Live<QString> &value, const kit::Accent &color, const QString &explanation);
    QWidget *siteLink(const QString &icon, std::string_view url);

    AppState &state;
    UrlOpener &urls;
};

} // namespace orvalen
