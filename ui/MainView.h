#pragma once

#include <QWidget>

namespace orvalen {

class ColorScheme;
struct WindowServices;

namespace kit {
class Theme;
}

/// The window: three columns, of which the centre one takes what room there is.
class MainView : public QWidget
{
    Q_OBJECT

public:
    explicit MainView(const WindowServices &services, QWidget *parent = nullptr);

    /// Light or dark as the desktop says. Without this, as the system's palette looks.
    void followColorScheme(ColorScheme &scheme);

protected:
    void changeEvent(QEvent *event) override;

private:
    kit::Theme *theme;
};

} // namespace orvalen
