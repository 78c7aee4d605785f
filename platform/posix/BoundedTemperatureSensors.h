#pragma once

#include <memory>

#include "platform/TemperatureSensors.h"
#include "platform/posix/BoundedQuestion.h"

namespace orvalen {

/// Sensors that answer within half a second though a file behind them hangs; std::nullopt until it lets go.
class BoundedTemperatureSensors : public TemperatureSensors
{
public:
    /// `prepareThread`, if any, is what the asking thread begins with. Must not throw.
    explicit BoundedTemperatureSensors(std::shared_ptr<TemperatureSensors> inner,
                                       std::chrono::nanoseconds limit = boundedAnswerTime,
                                       PrepareAskingThread prepareThread = {});

    [[nodiscard]] std::optional<std::vector<TemperatureReading>> read() override;

private:
    BoundedQuestion<std::optional<std::vector<TemperatureReading>>> question;
};

} // namespace orvalen
