#include "platform/simulated/SimulatedSensors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <ostream>
#include <string_view>
#include <vector>

namespace orvalen {
namespace {

using std::chrono::hours;
using std::chrono::minutes;

constexpr double room = 25.0;
constexpr double gibibyte = 1024.0 * 1024.0 * 1024.0;

ThermalModel atRest()
{
    ThermalModel model(room);
    model.step(hours(12), {}, room);
    return model;
}

ThermalModel fiveMinutesOf(const ThermalLoad &load)
{
    auto model = atRest();
    model.step(minutes(5), load, room);
    return model;
}

std::vector<double> read(std::string_view product, const ThermalModel &model)
{
    std::vector<double> readings;
    for (const auto &sensor : simulatedSensors())
        if (sensor.product == product)
            readings.push_back(sensor.celsius(model));
    return readings;
}

double readOne(std::string_view product, const ThermalModel &model)
{
    const auto readings = read(product, model);
    return readings.empty() ? std::nan("") : readings.front();
}

/// What such a machine was seen to do: °C in light use in a room of 25 °C, and the rise in K under each load.
struct Seen
{
    const char *product;
    double rest;
    double oneCore;
    double allCores;
    double graphics;

    friend std::ostream &operator<<(std::ostream &out, const Seen &seen) { return out << seen.product; }
};

class SimulatedSensorsSeen : public testing::TestWithParam<Seen>
{
protected:
    const ThermalModel rest = atRest();

    // Within a third, and a degree for those that hardly rise.
    void expectRise(double wanted, const ThermalLoad &load) const
    {
        const double rise = readOne(GetParam().product, fiveMinutesOf(load)) - readOne(GetParam().product, rest);
        EXPECT_NEAR(rise, wanted, std::max(0.3 * wanted, 1.0));
    }
};

TEST_P(SimulatedSensorsSeen, restsWhereSuchAMachineDoes)
{
    EXPECT_NEAR(readOne(GetParam().product, rest), GetParam().rest, 1.5);
}

TEST_P(SimulatedSensorsSeen, risesAsSuchAMachineDoes)
{
    expectRise(GetParam().oneCore, {.busyShare = 1.0 / 8.0});
    expectRise(GetParam().allCores, {.busyShare = 1.0});
    expectRise(GetParam().graphics, {.copyBytesPerSecond = gibibyte});
}

INSTANTIATE_TEST_SUITE_P(
    All, SimulatedSensorsSeen,
    testing::Values(
        Seen{"PMU tdie1", 42.9, 3.8, 11.2, 11.5}, Seen{"PMU tdie2", 41.5, 5.4, 14.8, 13.7},
        Seen{"PMU tdie4", 42.2, 4.0, 10.9, 11.4}, Seen{"PMU tdie5", 42.0, 4.3, 12.3, 12.0},
        Seen{"PMU tdie6", 41.8, 4.1, 11.3, 14.8}, Seen{"PMU tdie7", 41.7, 5.2, 13.6, 12.4},
        Seen{"PMU tdie8", 41.0, 4.0, 12.2, 16.5}, Seen{"PMU TP3w", 42.3, 4.2, 11.8, 12.5},
        Seen{"PMU tdev3", 36.7, 0.5, 0.7, 0.9}, Seen{"PMU tdev4", 35.5, 0.7, 1.3, 1.1},
        Seen{"PMU tdev5", 39.0, 3.7, 11.0, 13.0}, Seen{"PMU tdev7", 36.0, 1.0, 1.7, 1.8},
        Seen{"PMU tdev8", 36.8, 1.6, 4.6, 4.7}, Seen{"PMU2 tdie1", 43.6, 2.7, 8.5, 9.9},
        Seen{"PMU2 tdie4", 43.6, 3.6, 9.5, 10.9}, Seen{"PMU2 tdev2", 35.5, 0.9, 2.3, 2.2},
        Seen{"PMU2 tdev4", 39.5, 3.4, 10.2, 12.0}, Seen{"PMU2 tdev5", 36.0, 0.7, 0.8, 0.8},
        Seen{"SOC MTR Temp Sensor0", 33.2, 4.6, 13.5, 14.4}, Seen{"SOC MTR Temp Sensor1", 37.7, 4.3, 15.0, 21.5},
        Seen{"SOC MTR Temp Sensor2", 35.3, 7.6, 18.1, 18.6}, Seen{"PMGR SOC Die Temp Sensor0", 36.9, 3.9, 11.7, 14.6},
        Seen{"PMGR SOC Die Temp Sensor1", 37.0, 4.7, 13.8, 19.6},
        Seen{"PMGR SOC Die Temp Sensor2", 36.8, 5.9, 16.9, 17.1}, Seen{"pACC MTR Temp Sensor2", 35.1, 6.3, 18.9, 14.0},
        Seen{"pACC MTR Temp Sensor5", 38.5, 8.0, 20.6, 17.0}, Seen{"pACC MTR Temp Sensor9", 35.6, 9.0, 21.7, 17.0},
        Seen{"eACC MTR Temp Sensor0", 32.5, 6.4, 15.7, 16.3}, Seen{"eACC MTR Temp Sensor3", 34.0, 5.3, 15.0, 16.0},
        Seen{"GPU MTR Temp Sensor1", 30.0, 1.9, 7.0, 23.5}, Seen{"GPU MTR Temp Sensor4", 30.0, 2.6, 7.8, 25.8},
        Seen{"NAND CH0 temp", 35.0, 1.0, 1.2, 1.5}, Seen{"gas gauge battery", 32.5, 0.3, 0.3, 0.1}));

TEST(SimulatedSensors, chargingWarmsThePortsAndCoolsTheRegulatorsALittle)
{
    const auto rest = atRest();
    auto charging = rest;
    charging.step(minutes(20), {.chargingWatts = 20.0}, room);
    const auto rise = [&](const char *product) { return readOne(product, charging) - readOne(product, rest); };
    EXPECT_NEAR(rise("PMU tdev7"), 7.2, 2.0);
    EXPECT_NEAR(rise("PMU2 tdev5"), 4.3, 1.3);
    EXPECT_NEAR(rise("PMU tdev3"), 3.0, 1.0);
    EXPECT_NEAR(rise("gas gauge battery"), 0.5, 0.3);
    EXPECT_NEAR(rise("PMU tdie1"), -0.4, 0.3);
}

TEST(SimulatedSensors, constantAndParkedOnesStayWhereTheyAre)
{
    ThermalModel cold(-5.0);
    auto hot = fiveMinutesOf({.busyShare = 1.0});
    for (const char *product : {"PMU tcal", "PMU2 tcal"}) {
        EXPECT_EQ(readOne(product, cold), 51.9);
        EXPECT_EQ(readOne(product, hot), 51.9);
    }
    for (const char *product : {"ANE MTR Temp Sensor1", "ISP MTR Temp Sensor5"}) {
        EXPECT_EQ(readOne(product, cold), 30.0);
        EXPECT_EQ(readOne(product, hot), 30.0);
    }
    for (const char *product : {"PMU tdev1", "PMU tdev2", "PMU tdev6", "PMU2 tdev1", "PMU2 tdev3"})
        EXPECT_EQ(readOne(product, hot), -21.7);
}

TEST(SimulatedSensors, aCoolGraphicsCoreIsParked)
{
    EXPECT_EQ(readOne("GPU MTR Temp Sensor1", ThermalModel(5.0)), 30.0);
}

TEST(SimulatedSensors, thereAre57AndSixOfThemShareTheBatterysName)
{
    EXPECT_EQ(simulatedSensors().size(), 57u);
    std::map<std::string_view, int> count;
    for (const auto &sensor : simulatedSensors())
        ++count[sensor.product];
    EXPECT_EQ(count.size(), 52u);
    EXPECT_EQ(count["gas gauge battery"], 6);
}

TEST(SimulatedSensors, inAColdLaptopTheyDifferFromTheRoomByTheirCalibrationOnly)
{
    const ThermalModel cold(20.0);
    for (const auto &sensor : simulatedSensors()) {
        if (sensor.kind == SimulatedSensor::Kind::near) {
            EXPECT_NEAR(sensor.celsius(cold), 20.0, 1.5) << sensor.product;
        }
    }
}

} // namespace
} // namespace orvalen
