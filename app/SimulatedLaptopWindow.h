#pragma once

#include <QWidget>

#include "app/SimulatedControls.h"

namespace orvalen {

class AppState;
class SimulatedLaptop;
class TemperaturePlot;

/// Shows what happens inside a simulated laptop, and lets one change its surroundings. Both must outlive the window.
class SimulatedLaptopWindow : public QWidget
{
    Q_OBJECT

public:
    SimulatedLaptopWindow(AppState &state, SimulatedLaptop &laptop, QWidget *parent = nullptr);

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

    AppState &state;
    SimulatedLaptop &laptop;
    SimulatedControls controls;
    TemperaturePlot *plot = nullptr;
};

} // namespace orvalen
