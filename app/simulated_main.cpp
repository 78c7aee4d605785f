#include <QApplication>

#include "app/NativePlatform.h"
#include "app/Program.h"
#include "app/SimulatedLaptopWindow.h"
#include "core/AppState.h"
#include "platform/simulated/GraphicsCopiesSimulated.h"
#include "platform/simulated/InputIdleTimeSimulated.h"
#include "platform/simulated/PowerSourcesSimulated.h"
#include "platform/simulated/ProcessorTime.h"
#include "platform/simulated/SimulatedLaptop.h"
#include "platform/simulated/TemperatureSensorsSimulated.h"
#include "ui/MainView.h"

int main(int argc, char **argv)
{
    using namespace orvalen;

    introduceProgram();
    const QApplication application(argc, argv);

    // Everything of the real machine but what a laptop of that kind has and this one may lack.
    auto platform = nativePlatform(QStringLiteral("Orvalen Simulated"));
    auto &laptop = *new SimulatedLaptop({*platform.clock, *platform.processors, processorTimeUsed});
    platform.temperatureSensors = std::make_unique<TemperatureSensorsSimulated>(laptop);
    platform.powerSources = std::make_unique<PowerSourcesSimulated>(laptop);
    platform.inputIdleTime = std::make_unique<InputIdleTimeSimulated>(laptop);
    platform.graphicsCopies = std::make_unique<GraphicsCopiesSimulated>(laptop);
    Platform::install(std::move(platform));

    auto &state = AppState::shared();
    MainView window(state, *Platform::installed().urls);
    window.followColorScheme(*Platform::installed().colorScheme);
    SimulatedLaptopWindow laptopWindow(state, laptop);
    window.show();
    laptopWindow.show();
    runProgram();
}
