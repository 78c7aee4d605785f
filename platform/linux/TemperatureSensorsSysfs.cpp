#include "platform/linux/TemperatureSensorsSysfs.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <string_view>
#include <unistd.h>
#include <utility>

#include "platform/linux/SensorProductNames.h"
#include "platform/linux/SysfsFiles.h"

namespace orvalen {

namespace {

using Kind = SensorSource::Kind;

struct Found
{
    SensorSource source;
    std::string file;
    double unitsPerDegree;
};

bool exists(const std::string &file)
{
    return ::access(file.c_str(), F_OK) == 0;
}

/// A disk that does not say that it has nothing to rotate counts as one that does.
bool rotates(const std::string &chipFolder)
{
    const auto blocks = chipFolder + "/device/block/";
    for (const auto &block : sysfs::entries(blocks).value_or(std::vector<std::string>{})) {
        if (sysfs::text(blocks + block + "/queue/rotational") == "0")
            return false;
    }
    return true;
}

void findChips(const std::string &folder, const std::vector<std::string> &names, std::vector<Found> &found)
{
    constexpr std::string_view prefix = "temp";
    constexpr std::string_view suffix = "_input";
    for (const auto &name : names) {
        const auto chipFolder = folder + "/" + name;
        const auto chip = sysfs::text(chipFolder + "/name");
        const auto files = sysfs::entries(chipFolder);
        if (!chip || !files)
            continue;
        const bool isOnRotatingDisk = *chip == "drivetemp" && rotates(chipFolder);
        for (const auto &file : *files) {
            if (!file.starts_with(prefix) || !file.ends_with(suffix))
                continue;
            const auto path = chipFolder + "/" + file;
            const auto label = sysfs::text(path.substr(0, path.size() - suffix.size()) + "_label");
            found.push_back({{Kind::hwmonChip, *chip, label.value_or(""), isOnRotatingDisk}, path, 1000.0});
        }
    }
}

void findZones(const std::string &folder, const std::vector<std::string> &names, std::vector<Found> &found)
{
    for (const auto &name : names) {
        if (const auto type = sysfs::text(folder + "/" + name + "/type"); type && name.starts_with("thermal_zone"))
            found.push_back({{Kind::thermalZone, *type, "", false}, folder + "/" + name + "/temp", 1000.0});
    }
}

void findBatteries(const std::string &folder, const std::vector<std::string> &names, std::vector<Found> &found)
{
    for (const auto &name : names) {
        const auto supply = folder + "/" + name;
        if (sysfs::text(supply + "/type") == "Battery" && sysfs::text(supply + "/scope") != "Device")
            found.push_back({{Kind::battery, name, "", false}, supply + "/temp", 10.0});
    }
}

struct Place
{
    const char *folder;
    void (*find)(const std::string &folder, const std::vector<std::string> &names, std::vector<Found> &found);
};

constexpr std::array places{
    Place{"/class/hwmon", findChips},
    Place{"/class/thermal", findZones},
    Place{"/class/power_supply", findBatteries},
};

} // namespace

struct TemperatureSensorsSysfs::Sensor
{
    std::string product;
    std::string file;
    double unitsPerDegree;
};

struct TemperatureSensorsSysfs::Listing
{
    explicit Listing(const std::string &root);

    bool isAvailable = false; ///< The tree has a place for sensors at all.
    std::vector<Sensor> sensors;
    std::chrono::steady_clock::time_point madeAt = std::chrono::steady_clock::now();
    std::atomic<bool> isOutdated = false;
};

TemperatureSensorsSysfs::Listing::Listing(const std::string &root)
{
    std::vector<Found> found;
    for (const auto &[subfolder, find] : places) {
        const auto folder = root + subfolder;
        if (const auto names = sysfs::entries(folder)) {
            isAvailable = true;
            find(folder, *names, found);
        }
    }
    // A name without a file behind it would make every listing outdated at once.
    std::erase_if(found, [](const Found &sensor) { return !exists(sensor.file); });
    // Within a chip the sensors are in order already.
    std::stable_sort(found.begin(), found.end(), [](const Found &left, const Found &right) {
        return sysfs::comesBefore(left.source.chip, right.source.chip);
    });

    std::vector<SensorSource> sources;
    for (const auto &sensor : found)
        sources.push_back(sensor.source);
    auto products = productNames(sources);
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (products[i])
            sensors.push_back({std::move(*products[i]), std::move(found[i].file), found[i].unitsPerDegree});
    }
    isOutdated = sensors.empty();
}

TemperatureSensorsSysfs::TemperatureSensorsSysfs(std::string root, std::chrono::nanoseconds listingAge)
    : root(std::move(root)), listingAge(listingAge)
{
}

std::shared_ptr<TemperatureSensorsSysfs::Listing> TemperatureSensorsSysfs::currentListing()
{
    {
        const std::lock_guard lock(mutex);
        if (listing && !listing->isOutdated && std::chrono::steady_clock::now() - listing->madeAt < listingAge)
            return listing;
    }
    auto fresh = std::make_shared<Listing>(root);
    const std::lock_guard lock(mutex);
    listing = fresh;
    return fresh;
}

std::optional<std::vector<TemperatureReading>> TemperatureSensorsSysfs::read()
{
    const auto known = currentListing();
    if (!known->isAvailable)
        return std::nullopt;

    std::vector<TemperatureReading> readings;
    readings.reserve(known->sensors.size());
    for (const auto &sensor : known->sensors) {
        const auto [value, isGone] = sysfs::number(sensor.file);
        if (value)
            readings.push_back({sensor.product, static_cast<double>(*value) / sensor.unitsPerDegree});
        if (isGone)
            known->isOutdated = true;
    }
    return readings;
}

} // namespace orvalen
