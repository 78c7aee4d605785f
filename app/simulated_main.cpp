#include <QScreen>

#include <algorithm>

#include "app/NativePlatform.h"
#include "app/OrvalenApp.h"
#include "app/Program.h"
#include "app/SimulatedLaptopWindow.h"
#include "core/AppState.h"
#include "platform/posix/TerminationSignals.h"
#include "platform/simulated/GraphicsCopiesSimulated.h"
#include "platform/simulated/InputIdleTimeSimulated.h"
#include "platform/simulated/PowerSourcesSimulated.h"
#include "platform/simulated/ProcessorTime.h"
#include "platform/simulated/SimulatedLaptop.h"
#include "platform/simulated/TemperatureSensorsSimulated.h"

namespace {

using namespace orvalen;

/// The machine at hand, but for what a laptop of that kind has and this one may lack.
Platform simulatedPlatform(SimulatedLaptop *&laptop)
{
    auto platform = nativePlatform(QStringLiteral("Orvalen Simulated"));
    laptop = new SimulatedLaptop({*platform.clock, *platform.processors, processorTimeUsed}); // lives as the platform
    platform.temperatureSensors = std::make_unique<TemperatureSensorsSimulated>(*laptop);
    platform.powerSources = std::make_unique<PowerSourcesSimulated>(*laptop);
    platform.inputIdleTime = std::make_unique<InputIdleTimeSimulated>(*laptop);
    platform.graphicsCopies = std::make_unique<GraphicsCopiesSimulated>(*laptop);
    return platform;
}

/// Both windows in full view on a screen that is wide enough, else the second one over the edge of the first.
void placeSideBySide(QWidget &first, QWidget &second)
{
    constexpr int gap = 16;
    const auto room = first.screen()->availableGeometry().adjusted(gap, gap, -gap, -3 * gap); // title bars included
    const auto hint = second.sizeHint();
    first.resize(std::clamp(room.width() - hint.width() - gap, first.minimumWidth(), first.width()), first.height());
    const int width = first.width() + gap + hint.width();
    const int left = room.left() + std::max(0, (room.width() - width) / 2);
    first.move(left, room.top());
    second.resize(hint.width(), std::min(hint.height(), room.height()));
    second.move(std::min(left + first.width() + gap, room.right() - hint.width()), room.top());
}

} // namespace

int main(int argc, char **argv)
{
    const TerminationSignals signals;
    const auto instance = nativeProgramInstance(ORVALEN_APPLICATION_ID ".Simulated");
    if (!instance->begin())
        return 0;
    prepareNativePlatform();
    Program program(argc, argv, signals);
    SimulatedLaptop *laptop = nullptr;
    Platform::install(simulatedPlatform(laptop));
    auto &platform = Platform::installed();

    OrvalenApp app;
    SimulatedLaptopWindow laptopWindow(AppState::shared(), *laptop);
    app.window.followColorScheme(*platform.colorScheme);
    laptopWindow.followColorScheme(*platform.colorScheme);
    placeSideBySide(app.window, laptopWindow);
    laptopWindow.show();
    app.window.show();
    app.beginWhenSeen(*instance, {&laptopWindow, &app.window});
    program.run();
}
