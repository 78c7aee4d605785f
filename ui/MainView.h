#pragma once

#include <QWidget>

namespace orvalen {

class AppState;
class CaffeineManager;
class ColorScheme;
class UrlOpener;
class WebScreenServer;

namespace kit {
class Theme;
}

/// The window: three columns, of which the centre one takes what room there is.
class MainView : public QWidget
{
    Q_OBJECT

public:
    /// Everything must outlive the window.
    MainView(AppState &state, WebScreenServer &webServer, CaffeineManager &caffeine, UrlOpener &urls,
             QWidget *parent = nullptr);

    /// Light or dark as the desktop says. Without this, as the system's palette looks.
    void followColorScheme(ColorScheme &scheme);

private:
    kit::Theme *theme;
};

} // namespace orvalen
