#include "core/SystemThermalData.h"

#include <algorithm>
#include <numeric>
#include <string_view>

namespace orvalen {

namespace {

bool holds(std::string_view name, std::string_view word)
{
    return name.find(word) != std::string_view::npos;
}

bool isPlausible(double celsius)
{
    return 0.0 < celsius && celsius < 125.0; // false for NaN
}

// "tcal" sensors report a calibration constant.
bool isSoc(std::string_view name)
{
    return (holds(name, "SOC") || holds(name, "pACC") || holds(name, "eACC")) && !holds(name, "tcal");
}

bool isPmu(std::string_view name)
{
    return holds(name, "PMU") && !holds(name, "tcal");
}

bool isBridge(std::string_view name)
{
    return isPmu(name) && (holds(name, "TP3w") || holds(name, "tdie") || holds(name, "tdev4") || holds(name, "tdev5"));
}

double mean(const std::vector<double> &values)
{
    return values.empty() ? 0.0
                          : std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

} // namespace

SystemThermalData summarised(const std::vector<TemperatureReading> &readings)
{
    std::vector<double> soc;
    std::vector<double> pmu;
    std::vector<double> bridge;
    std::vector<double> battery;
    std::vector<double> nand;

    for (const auto &[product, celsius] : readings) {
        if (!isPlausible(celsius))
            continue;
        if (isSoc(product))
            soc.push_back(celsius);
        if (isPmu(product))
            pmu.push_back(celsius);
        if (isBridge(product))
            bridge.push_back(celsius);
        if (holds(product, "battery"))
            battery.push_back(celsius);
        if (holds(product, "NAND"))
            nand.push_back(celsius);
    }

    SystemThermalData data;
    data.socTemp = mean(soc);
    data.socMax = soc.empty() ? 0.0 : *std::max_element(soc.begin(), soc.end());
    data.pmuTemp = mean(pmu);
    data.bridgeTemp = bridge.empty() ? std::max(data.pmuTemp, data.socTemp) : mean(bridge);
    data.batteryTemp = mean(battery);
    data.nandTemp = mean(nand);
    return data;
}

} // namespace orvalen
