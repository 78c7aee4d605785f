#include "app/SimulatedControls.h"

#include <cmath>

#include "platform/simulated/SimulatedLaptop.h"

namespace orvalen {

namespace {

template <typename T>
void update(Published<T> &published, const T &value)
{
    if (!(published.value() == value))
        published = value;
}

} // namespace

SimulatedControls::SimulatedControls(SimulatedLaptop &laptop)
    : laptop(laptop),
      temperatures(*this, summarised(laptop.trueReadings())),
      secondsAway(*this, std::floor(laptop.sinceLastInput().count())),
      roomCelsius(*this, laptop.roomCelsius(), [&laptop](double celsius) { laptop.setRoomCelsius(celsius); }),
      isChargerPluggedIn(*this, laptop.isChargerPluggedIn(), [&laptop](bool in) { laptop.setChargerPluggedIn(in); }),
      batteryPercent(*this, std::round(laptop.batteryPercent()),
                     [&laptop](double percent) {
                         // What a refresh brings is the laptop's own level, rounded: not to be given back to it.
                         if (std::round(laptop.batteryPercent()) != percent)
                             laptop.setBatteryPercent(percent);
                     }),
      isUserAway(*this, laptop.isUserAway(),
                 [this](bool away) {
                     this->laptop.setUserAway(away);
                     update(secondsAway, std::floor(this->laptop.sinceLastInput().count()));
                 }),
      allSensorsGone(*this, laptop.faults().allGone, [this](bool) { setFaults(); }),
      oneSensorStuck(*this, laptop.faults().oneStuck, [this](bool) { setFaults(); }),
      oneSensorNotANumber(*this, laptop.faults().oneNotANumber, [this](bool) { setFaults(); })
{
}

void SimulatedControls::refresh()
{
    update(temperatures, summarised(laptop.trueReadings()));
    update(secondsAway, std::floor(laptop.sinceLastInput().count()));
    update(batteryPercent, std::round(laptop.batteryPercent()));
}

void SimulatedControls::coolDown()
{
    laptop.coolDown();
    refresh();
}

void SimulatedControls::setFaults()
{
    laptop.setFaults({.allGone = allSensorsGone, .oneStuck = oneSensorStuck, .oneNotANumber = oneSensorNotANumber});
}

} // namespace orvalen
