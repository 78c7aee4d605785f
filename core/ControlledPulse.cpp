#include "core/ControlledPulse.h"

#include <algorithm>
#include <utility>

#include "platform/Clock.h"
#include "platform/Dispatch.h"
#include "platform/GraphicsCopies.h"
#include "platform/Processors.h"

namespace orvalen {

int spinnerCount(int activeProcessors)
{
    return std::clamp(activeProcessors - 2, 2, 4);
}

double pulseProgress(double start, double target, double current)
{
    const double fraction = (current - start) / (target - start);
    return fraction >= 0.0 ? std::min(fraction, 1.0) : 0.0;
}

bool shouldStopHeating(double target, const SystemThermalData &reading, std::chrono::duration<double> elapsed)
{
    return target <= reading.bridgeTemp || target + 2.0 <= reading.pmuTemp || !(elapsed <= ControlledPulse::timeOut);
}

void spin(const EngineAtomicFlag &flag)
{
    while (flag.value()) {
    }
}

void copyGraphicsMemory(GraphicsQueue &queue, const EngineAtomicFlag &flag)
try {
    const auto a = queue.makeBuffer(ControlledPulse::graphicsBufferBytes);
    const auto b = queue.makeBuffer(ControlledPulse::graphicsBufferBytes);
    while (flag.value()) {
        if (a && b)
            queue.copy(*a, *b, ControlledPulse::graphicsBufferBytes);
    }
} catch (...) { // a driver's trouble ends this worker alone
}

void heatGraphics(GraphicsCopies &copies, const EngineAtomicFlag &flag)
try {
    const auto queue = flag.value() ? copies.openDefaultQueue() : nullptr;
    if (queue && flag.value()) // opening may take its time
        copyGraphicsMemory(*queue, flag);
} catch (...) { // a driver's trouble; the processor heats alone
}

void ControlledPulse::start(Means means, double targetTemp, ThermalEngine::ProgressCallback progress,
                            ThermalEngine::CompletionCallback completion)
{
    const std::shared_ptr<ControlledPulse> pulse(
        new ControlledPulse(std::move(means), targetTemp, std::move(progress), std::move(completion)));
    try {
        // First the guard, then what it guards.
        pulse->means.dispatch.concurrentlyAfter(deadMan, [pulse] { pulse->end(); });
        pulse->means.dispatch.concurrently(QualityOfService::userInitiated, [pulse] { pulse->supervise(); });
    } catch (...) { // no thread to be had: a pulse that never heats
        pulse->end();
    }
}

ControlledPulse::ControlledPulse(Means means, double targetTemp, ThermalEngine::ProgressCallback progress,
                                 ThermalEngine::CompletionCallback completion)
    : means(std::move(means)), targetTemp(targetTemp), progress(std::move(progress)), completion(std::move(completion))
{
}

void ControlledPulse::supervise()
{
    try {
        heat();
    } catch (...) { // no thread for a worker: end what has been started
    }
    end();
}

void ControlledPulse::heat()
{
    const double startTemp = sample().bridgeTemp;
    currentTemp = startTemp;
    if (targetTemp <= startTemp || !flag->value()) // the dead-man may have come during the first reading
        return;

    startWorkers();
    const auto startTime = means.clock.now();
    do {
        means.clock.sleepFor(samplingInterval);
        const auto reading = sample();
        currentTemp = reading.bridgeTemp;
        reportProgress(pulseProgress(startTemp, targetTemp, reading.bridgeTemp));
        if (shouldStopHeating(targetTemp, reading, means.clock.now() - startTime))
            flag->setValue(false);
    } while (flag->value());
}

void ControlledPulse::startWorkers()
{
    // A graphics driver may take a tenth of a second to load: the processor heats meanwhile.
    try {
        means.dispatch.concurrently(QualityOfService::userInteractive,
                                    [&copies = means.graphicsCopies, flag = flag, alone = means.graphicsAlone] {
                                        const std::unique_lock turn(*alone, std::try_to_lock);
                                        if (turn)
                                            heatGraphics(copies, *flag);
                                    });
    } catch (...) { // NOLINT(bugprone-empty-catch): no thread for it; the processor heats alone
    }
    spinners = means.dispatch.makeConcurrentQueue("orvalen.pulse");
    for (int i = spinnerCount(means.processors.activeCount()); i > 0; --i)
        spinners->run([flag = flag] { spin(*flag); });
}

SystemThermalData ControlledPulse::sample() const
{
    try {
        return means.readSensors();
    } catch (...) {
        return {};
    }
}

void ControlledPulse::reportProgress(double fraction)
{
    const std::lock_guard guard(reporting);
    if (ended)
        return;
    // The temperature is read when the task runs: the main thread shows the newest there is.
    means.dispatch.onMain([self = shared_from_this(), fraction] { self->progress(self->currentTemp, fraction); });
}

void ControlledPulse::end()
{
    flag->setValue(false);
    const std::lock_guard guard(reporting);
    if (ended)
        return;
    means.dispatch.onMain([self = shared_from_this(), finalTemp = currentTemp.load()] { self->completion(finalTemp); });
    ended = true; // only now: had there been no memory for the post, the dead-man would try again
}

} // namespace orvalen
