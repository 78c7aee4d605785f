#include "core/ThermalEngine.h"

#include <memory>
#include <utility>

#include "core/ControlledPulse.h"
#include "platform/InputIdleTime.h"
#include "platform/Platform.h"

namespace orvalen {

PowerStatus powerStatus(const std::vector<PowerSource> &sources)
{
    PowerStatus status;
    for (const auto &source : sources) {
        if (source.state == "AC Power")
            status.isAcConnected = true;
        if (source.currentCapacity)
            status.batteryPercent = static_cast<int>(*source.currentCapacity);
    }
    return status;
}

ThermalEngine &ThermalEngine::shared()
{
    static auto &engine = []() -> ThermalEngine & {
        auto &platform = Platform::installed();
        return *new ThermalEngine({*platform.temperatureSensors, *platform.inputIdleTime, *platform.powerSources,
                                   *platform.graphicsCopies, *platform.processors, *platform.dispatch,
                                   *platform.clock});
    }();
    return engine;
}

SystemThermalData ThermalEngine::readSensors()
{
    try {
        return summarised(machine.temperatureSensors.read().value_or(std::vector<TemperatureReading>{}));
    } catch (...) { // whatever an adapter throws, it has not read anything
        return {};
    }
}

double ThermalEngine::getUserIdleSeconds()
{
    using Seconds = std::chrono::duration<double>;
    try {
        return machine.inputIdleTime.sinceLastInput().value_or(Seconds::zero()).count();
    } catch (...) {
        return 0.0;
    }
}

PowerStatus ThermalEngine::getPowerStatus()
{
    try {
        return powerStatus(machine.powerSources.list());
    } catch (...) {
        return {};
    }
}

void ThermalEngine::executeControlledPulse(double targetTemp, ProgressCallback progressCallback,
                                           CompletionCallback completion)
{
    ControlledPulse::start({[this] { return readSensors(); }, machine.graphicsCopies, machine.processors,
                            machine.dispatch, machine.clock, graphicsAlone},
                           targetTemp, std::move(progressCallback), std::move(completion));
}

} // namespace orvalen
