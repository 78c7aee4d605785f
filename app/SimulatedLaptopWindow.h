#pragma once

#include <QWidget>

#include "app/SimulatedControls.h"

namespace orvalen {

class AppState;
class ColorScheme;
class SimulatedLaptop;
class TemperaturePlot;

namespace kit {
class Theme;
}

/// Shows what happens inside a simulated laptop, and lets one change its surroundings. Both must outlive the window.
class SimulatedLaptopWindow : public QWidget
{
    Q_OBJECT

public:
    SimulatedLaptopWindow(AppState &state, SimulatedLaptop &laptop, QWidget *parent = nullptr);

    /// Light or dark as the desktop says. Without this, as the system's palette looks.
    void followColorScheme(ColorScheme &scheme);

    /// Shows the laptop as it is now. Happens by itself twice a second.
    void refresh();

    [[nodiscard]] QSize sizeHint() const override;

private:
    QWidget *content();
    QWidget *header();
    QWidget *plotCard();
    QWidget *roomCard();
    QWidget *powerCard();
    QWidget *userCard();
    QWidget *faultsCard();

    kit::Theme *theme;
    AppState &state;
    SimulatedLaptop &laptop;
    SimulatedControls controls;
    TemperaturePlot *plot = nullptr;
};

} // namespace orvalen
