#include "platform/simulated/SimulatedLaptop.h"

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Clock.h"
#include "platform/Processors.h"
#include "platform/simulated/SimulatedSensors.h"

namespace orvalen {

namespace {

using Seconds = std::chrono::duration<double>;

// Over less time the share of a core that the process used says nothing: the system counts in ticks.
constexpr std::chrono::milliseconds shortestAdvance{50};

constexpr double cores = 8.0; // the laptop's; a host with more of them heats it as if it had eight
constexpr double batteryWattHours = 50.0;
constexpr double fullChargingWatts = 20.0;
constexpr double chargingSlowsAbovePercent = 80.0;
constexpr double lastChargingWatts = 2.0;
constexpr Seconds chargingStep{60.0}; // charging power counts as constant for so long

constexpr std::string_view stuckProduct = "PMU tdie1";
constexpr std::string_view notANumberProduct = "PMU tdie2";

} // namespace

SimulatedLaptop::SimulatedLaptop(Means means, double roomCelsius)
    : means(std::move(means)),
      model(roomCelsius),
      room(roomCelsius),
      upTo(this->means.clock.now()),
      processorTimeAtLastAdvance(this->means.processorTimeUsed())
{
}

std::vector<TemperatureReading> SimulatedLaptop::sensorReadings()
{
    const std::lock_guard guard(lock);
    advance();
    if (present.allGone)
        return {};
    auto all = readings();
    for (auto &[product, celsius] : all) {
        if (present.oneStuck && product == stuckProduct)
            celsius = stuckCelsius;
        if (present.oneNotANumber && product == notANumberProduct)
            celsius = std::numeric_limits<double>::quiet_NaN();
    }
    return all;
}

PowerSource SimulatedLaptop::powerSource()
{
    const std::lock_guard guard(lock);
    advance();
    return {pluggedIn ? "AC Power" : "Battery Power", static_cast<std::int64_t>(charge + 0.5)};
}

Seconds SimulatedLaptop::sinceLastInput()
{
    const std::lock_guard guard(lock);
    return awaySince ? Seconds(means.clock.now() - *awaySince) : Seconds::zero();
}

void SimulatedLaptop::countCopy(std::size_t bytes)
{
    const std::lock_guard guard(lock);
    bytesSinceLastAdvance += bytes;
}

std::vector<TemperatureReading> SimulatedLaptop::trueReadings()
{
    const std::lock_guard guard(lock);
    advance();
    return readings();
}

std::chrono::nanoseconds SimulatedLaptop::now() const
{
    return means.clock.now();
}

double SimulatedLaptop::roomCelsius()
{
    const std::lock_guard guard(lock);
    return room;
}

void SimulatedLaptop::setRoomCelsius(double celsius)
{
    const std::lock_guard guard(lock);
    advance();
    room = celsius;
}

bool SimulatedLaptop::isChargerPluggedIn()
{
    const std::lock_guard guard(lock);
    return pluggedIn;
}

void SimulatedLaptop::setChargerPluggedIn(bool isPluggedIn)
{
    const std::lock_guard guard(lock);
    advance();
    pluggedIn = isPluggedIn;
}

double SimulatedLaptop::batteryPercent()
{
    const std::lock_guard guard(lock);
    advance();
    return charge;
}

void SimulatedLaptop::setBatteryPercent(double percent)
{
    const std::lock_guard guard(lock);
    advance();
    charge = std::clamp(percent, 0.0, 100.0);
}

bool SimulatedLaptop::isUserAway()
{
    const std::lock_guard guard(lock);
    return awaySince.has_value();
}

void SimulatedLaptop::setUserAway(bool away)
{
    const std::lock_guard guard(lock);
    if (!away)
        awaySince.reset();
    else if (!awaySince)
        awaySince = means.clock.now();
}

SensorFaults SimulatedLaptop::faults()
{
    const std::lock_guard guard(lock);
    return present;
}

void SimulatedLaptop::setFaults(const SensorFaults &faults)
{
    const std::lock_guard guard(lock);
    advance();
    if (faults.oneStuck && !present.oneStuck) {
        for (const auto &[product, celsius] : readings())
            if (product == stuckProduct)
                stuckCelsius = celsius;
    }
    present = faults;
}

void SimulatedLaptop::coolDown()
{
    const std::lock_guard guard(lock);
    advance();
    model.setAll(room);
}

void SimulatedLaptop::advance()
{
    const auto now = means.clock.now();
    const Seconds elapsed = now - upTo;
    if (elapsed < shortestAdvance)
        return;
    const auto processorTime = means.processorTimeUsed();
    const double busyCores = Seconds(processorTime - processorTimeAtLastAdvance) / elapsed;
    const ThermalLoad load{
        .busyShare = busyCores / std::min<double>(means.processors.activeCount(), cores),
        .copyBytesPerSecond = static_cast<double>(std::exchange(bytesSinceLastAdvance, 0)) / elapsed.count(),
    };
    upTo = now;
    processorTimeAtLastAdvance = processorTime;
    pass(elapsed, load);
}

void SimulatedLaptop::pass(Seconds duration, ThermalLoad load)
{
    while (duration > Seconds::zero()) {
        load.chargingWatts = chargingWatts();
        const auto step = load.chargingWatts > 0.0 ? std::min(duration, chargingStep) : duration;
        model.step(step, load, room);
        const double watts = pluggedIn ? load.chargingWatts : -ThermalModel::inputWatts(load);
        charge = std::clamp(charge + 100.0 * watts * step.count() / 3600.0 / batteryWattHours, 0.0, 100.0);
        duration -= step;
    }
}

// Full power up to a point, then less and less.
double SimulatedLaptop::chargingWatts() const
{
    if (!pluggedIn || charge >= 100.0)
        return 0.0;
    const double slowing = (charge - chargingSlowsAbovePercent) / (100.0 - chargingSlowsAbovePercent);
    return fullChargingWatts + std::max(slowing, 0.0) * (lastChargingWatts - fullChargingWatts);
}

std::vector<TemperatureReading> SimulatedLaptop::readings() const
{
    std::vector<TemperatureReading> all;
    const auto sensors = simulatedSensors();
    all.reserve(sensors.size());
    for (const auto &sensor : sensors)
        all.push_back({std::string(sensor.product), sensor.celsius(model)});
    return all;
}

} // namespace orvalen
