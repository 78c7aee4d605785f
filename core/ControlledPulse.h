#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

#include "core/EngineAtomicFlag.h"
#include "core/ThermalEngine.h"

namespace orvalen {

class ConcurrentQueue;
class GraphicsQueue;

/// 2 to 4, and two cores left free where there are four to six.
[[nodiscard]] int spinnerCount(int activeProcessors);

/// The fraction of the way from `start` to `target` at `current`, from 0 to 1; 0 where it is not a number.
[[nodiscard]] double pulseProgress(double start, double target, double current);

/// The power-management unit is a safety cut-off of its own: against the same target plus 2 °C, and on `pmuTemp`.
[[nodiscard]] bool shouldStopHeating(double target, const SystemThermalData &reading,
                                     std::chrono::duration<double> elapsed);

/// Keeps one processor core busy until the flag falls.
void spin(const EngineAtomicFlag &flag);

/// Keeps the graphics processor busy with large copies until the flag falls.
void copyGraphicsMemory(GraphicsQueue &queue, const EngineAtomicFlag &flag);

/// The same with a device that is opened first; nothing without one, or where the flag has fallen by
/// then.
void heatGraphics(GraphicsCopies &copies, const EngineAtomicFlag &flag);

/// One heating pulse, from its first reading to its completion. What it was started with must outlive it, and its
/// dead-man, by 20 s; after the completion nothing of it is used any more but by a graphics driver that is still
/// loading.
///
/// Two threads can end it: the supervisor, which samples and decides, and a dead-man that knows nothing but the time.
/// Whichever comes first clears the flag and completes; the other then finds nothing left to do.
class ControlledPulse : public std::enable_shared_from_this<ControlledPulse>
{
public:
    static constexpr std::chrono::milliseconds samplingInterval{250};
    static constexpr std::chrono::seconds timeOut{15};
    static constexpr std::chrono::seconds deadMan{20};
    static constexpr std::size_t graphicsBufferBytes = 33'554'432; // 32 MiB: long enough a copy to keep the chip busy

    struct Means
    {
        std::function<SystemThermalData()> readSensors; ///< Any thread. May throw: it then has read nothing.
        GraphicsCopies &graphicsCopies;
        Processors &processors;
        Dispatch &dispatch;
        Clock &clock;
        /// Held by a pulse's graphics worker while it lives. A driver may hang for good: pulses that find it held heat
        /// by the processor alone, so that no more than one thread is ever lost to it.
        std::shared_ptr<std::mutex> graphicsAlone;
    };

    /// Returns at once.
    static void start(Means means, double targetTemp, ThermalEngine::ProgressCallback progress,
                      ThermalEngine::CompletionCallback completion);

private:
    ControlledPulse(Means means, double targetTemp, ThermalEngine::ProgressCallback progress,
                    ThermalEngine::CompletionCallback completion);

    void supervise();
    void heat();
    void startWorkers();
    [[nodiscard]] SystemThermalData sample() const;
    void reportProgress(double fraction);
    void end();

    const Means means;
    const double targetTemp;
    const ThermalEngine::ProgressCallback progress;
    const ThermalEngine::CompletionCallback completion;

    // Shared on its own, not through the pulse: a worker that takes its time to notice holds nothing else alive.
    const std::shared_ptr<EngineAtomicFlag> flag = std::make_shared<EngineAtomicFlag>();
    std::unique_ptr<ConcurrentQueue> spinners;
    std::atomic<double> currentTemp = 0.0;

    std::mutex reporting; // orders the posts of the two threads that can end the pulse
    bool ended = false;
};

} // namespace orvalen
