#include "platform/linux/SensorProductNames.h"

#include <gmock/gmock.h>

#include <ostream>

namespace orvalen {
namespace {

using Kind = SensorSource::Kind;
using Names = std::vector<std::optional<std::string>>;

SensorSource chip(std::string name, std::string label = "")
{
    return {Kind::hwmonChip, std::move(name), std::move(label), false};
}

SensorSource zone(std::string type)
{
    return {Kind::thermalZone, std::move(type), "", false};
}

SensorSource battery(std::string name)
{
    return {Kind::battery, std::move(name), "", false};
}

SensorSource rotatingDisk()
{
    return {Kind::hwmonChip, "drivetemp", "", true};
}

constexpr auto leftOut = std::nullopt;

struct Row
{
    std::string behaviour;
    std::vector<SensorSource> machine;
    Names names;

    friend std::ostream &operator<<(std::ostream &stream, const Row &row) { return stream << row.behaviour; }
};

class SensorProductNames : public ::testing::TestWithParam<Row>
{
};

TEST_P(SensorProductNames, standForTheirGroups)
{
    EXPECT_EQ(productNames(GetParam().machine), GetParam().names);
}

const std::vector<Row> rows{
    // Labels in the words of the groups.
    {"aLabelThatSpeaksOfAGroupStays",
     {chip("macsmc_hwmon", "NAND Flash Temperature"), chip("macsmc_hwmon", "PMU tdie1"),
      chip("macsmc_hwmon", "SOC Die 0"), chip("macsmc_hwmon", "pACC MTR Temp Sensor2"),
      chip("macsmc_hwmon", "eACC MTR Temp Sensor0"), chip("macsmc_hwmon", "gas gauge battery"),
      chip("coretemp", "SOC 0"), chip("k10temp", "SOC"), chip("zenpower", "SOC Temp")},
     {"NAND Flash Temperature", "PMU tdie1", "SOC Die 0", "pACC MTR Temp Sensor2", "eACC MTR Temp Sensor0",
      "gas gauge battery", "SOC 0", "SOC", "SOC Temp"}},
    {"aForeignChipCannotSpeakOfGroups",
     {chip("nct6775", "PMU 1"), chip("hidpp_battery_0", "battery")},
     {leftOut, leftOut}},

    // Apple silicon.
    {"appleWirelessModuleIsBridge", {chip("macsmc_hwmon", "WiFi/BT Module Temp")}, {"PMU tdev4"}},
    {"appleBacksideIsBridge", {chip("macsmc_hwmon", "SoC Backside Temp")}, {"PMU2 tdev4"}},
    {"appleChargeRegulatorIsPowerManagement", {chip("macsmc_hwmon", "Charge Regulator Temp")}, {"PMU tdev7"}},
    {"appleFlashIsStorage", {chip("macsmc_hwmon", "Nand flash temp")}, {"NAND CH0 temp"}},
    {"appleLabelsInAnyCaseAndLength",
     {chip("macsmc_hwmon", "wifi/bt module temperature"), chip("macsmc_hwmon", "Main CHARGE REGULATOR")},
     {"PMU tdev4", "PMU tdev7"}},
    {"appleBatteryCountsOnce",
     {battery("macsmc-battery"), chip("macsmc_battery", "temp"), chip("macsmc_hwmon", "Battery Hotspot")},
     {leftOut, leftOut, "gas gauge battery"}},
    {"appleBatteryWithoutHotspotIsThePowerSupply",
     {battery("macsmc-battery"), chip("macsmc_battery", "temp")},
     {"gas gauge battery macsmc-battery", leftOut}},
    {"appleHotspotSaysNothingOfOtherBatteries",
     {chip("macsmc_hwmon", "Battery Hotspot"), battery("BAT0")},
     {"gas gauge battery", "gas gauge battery BAT0"}},
    {"anUnknownAppleSensorIsLeftOut", {chip("macsmc_hwmon", "Palm Rest")}, {leftOut}},

    // Processors.
    {"intelPackageAndCores",
     {chip("coretemp", "Package id 0"), chip("coretemp", "Core 0"), chip("coretemp", "Core 28")},
     {"SOC coretemp Package id 0", "pACC coretemp Core 0", "pACC coretemp Core 28"}},
    {"amdDieAndComplexesWithoutTheOffsetValue",
     {chip("k10temp", "Tctl"), chip("k10temp", "Tdie"), chip("k10temp", "Tccd1"), chip("k10temp", "Tccd2")},
     {leftOut, "SOC k10temp Tdie", "SOC k10temp Tccd1", "SOC k10temp Tccd2"}},
    {"amdOffsetValueGivesWayToComplexesAlone",
     {chip("k10temp", "Tctl"), chip("k10temp", "Tccd1")},
     {leftOut, "SOC k10temp Tccd1"}},
    {"amdOffsetValueIsBetterThanNothing", {chip("k10temp", "Tctl")}, {"SOC k10temp Tctl"}},
    {"amdOtherDriver",
     {chip("zenpower", "Tdie"), chip("zenpower", "Tctl"), chip("zenpower", "Tccd1")},
     {"SOC zenpower Tdie", leftOut, "SOC zenpower Tccd1"}},
    {"packageZonesWithoutProcessorChip",
     {zone("x86_pkg_temp"), zone("B0D4"), zone("TCPU")},
     {"SOC x86_pkg_temp", "SOC B0D4", "SOC TCPU"}},
    {"packageZonesGiveWayToProcessorChip",
     {zone("x86_pkg_temp"), zone("B0D4"), zone("TCPU"), chip("coretemp", "Package id 0")},
     {leftOut, leftOut, leftOut, "SOC coretemp Package id 0"}},
    {"packageZonesStandBesideAnAmdChip",
     {zone("x86_pkg_temp"), chip("k10temp", "Tdie")},
     {"SOC x86_pkg_temp", "SOC k10temp Tdie"}},
    {"boardComputerZones",
     {zone("cpu_thermal"), zone("soc_thermal"), zone("cpu-thermal")},
     {"SOC cpu_thermal", "SOC soc_thermal", "SOC cpu-thermal"}},
    {"notebookControllersProcessorWithoutProcessorChip",
     {chip("dell_smm", "CPU"), chip("thinkpad", "CPU")},
     {"SOC dell_smm CPU", "SOC thinkpad CPU"}},
    {"notebookControllersProcessorGivesWayToIntel",
     {chip("dell_smm", "CPU"), chip("thinkpad", "CPU"), chip("coretemp", "Core 0")},
     {leftOut, leftOut, "pACC coretemp Core 0"}},
    {"notebookControllersProcessorGivesWayToAmd",
     {chip("dell_smm", "CPU"), chip("thinkpad", "CPU"), chip("k10temp", "Tctl")},
     {leftOut, leftOut, "SOC k10temp Tctl"}},

    // Skin and board.
    {"skinIsBridge", {zone("TSKN")}, {"PMU tdev5 TSKN"}},
    {"ambientIsBridge", {chip("dell_smm", "Ambient")}, {"PMU tdev5 dell_smm Ambient"}},
    {"boardSensorsOfTheControllerAreBridge",
     {chip("cros_ec", "local_f75303@4d"), chip("cros_ec", "Ambient"), chip("cros_ec")},
     {"PMU tdev5 cros_ec local_f75303@4d", "PMU tdev5 cros_ec Ambient", "PMU tdev5 cros_ec"}},
    {"theControllersSensorsInsidePartsAreLeftOut",
     {chip("cros_ec", "PECI"), chip("cros_ec", "cpu_f75303@4d"), chip("cros_ec", "ddr_f75303@4d"),
      chip("cros_ec", "battery_temp@b"), chip("cros_ec", "Charger"), chip("cros_ec", "SOC")},
     {leftOut, leftOut, leftOut, leftOut, leftOut, leftOut}},

    // Power management.
    {"firmwareZoneIsNeverBridge", {zone("acpitz")}, {"PMU acpitz"}},
    {"chipsetIsPowerManagement",
     {zone("pch_cannonlake"), zone("pch_skylake")},
     {"PMU pch_cannonlake", "PMU pch_skylake"}},
    {"notebookControllersRestIsPowerManagement",
     {chip("dell_smm", "Other"), chip("dell_smm", "SODIMM"), chip("thinkpad")},
     {"PMU dell_smm Other", "PMU dell_smm SODIMM", "PMU thinkpad"}},
    {"notebookControllersGraphicsIsLeftOut", {chip("dell_smm", "GPU"), chip("thinkpad", "GPU")}, {leftOut, leftOut}},

    // Storage.
    {"aDrivesOwnMeanIsStorage",
     {chip("nvme", "Composite"), chip("nvme", "Sensor 1"), chip("nvme", "Sensor 2")},
     {"NAND nvme Composite", leftOut, leftOut}},
    {"aDiskIsStorageUnlessItRotates", {chip("drivetemp"), rotatingDisk()}, {"NAND drivetemp", leftOut}},

    // Batteries and graphics.
    {"batteriesUnderTheirNames",
     {battery("BAT0"), battery("CMB1")},
     {"gas gauge battery BAT0", "gas gauge battery CMB1"}},
    {"aBatteryShownAsChipCountsOnce", {battery("BAT0"), chip("BAT0", "temp")}, {"gas gauge battery BAT0", leftOut}},
    {"graphicsAreNamedAndInNoGroup",
     {chip("amdgpu", "edge"), chip("nouveau"), chip("i915"), chip("xe", "pkg"), chip("nvidia")},
     {"GPU amdgpu edge", "GPU nouveau", "GPU i915", "GPU xe pkg", "GPU nvidia"}},

    // Left out.
    {"constantsAreLeftOut",
     {zone("INT3400 Thermal"), zone("SEN1"), zone("SEN4"), zone("SEN7")},
     {leftOut, leftOut, leftOut, leftOut}},
    {"radiosAndNetworkAreLeftOut",
     {zone("iwlwifi_1"), chip("iwlwifi_1"), chip("ath10k_hwmon"), chip("ath11k_hwmon"), chip("mt7921_phy0"),
      chip("r8169_0_200:00")},
     {leftOut, leftOut, leftOut, leftOut, leftOut, leftOut}},
    {"memoryModulesAndSocketsAreLeftOut",
     {chip("spd5118"), chip("jc42"), chip("ucsi_source_psy_USBC000:001"), chip("hidpp_battery_0")},
     {leftOut, leftOut, leftOut, leftOut}},
    {"whatNobodyKnowsIsLeftOut", {chip("nct6798", "SYSTIN"), zone("TZ42"), chip("")}, {leftOut, leftOut, leftOut}},

    // Twice the same.
    {"aZoneShownAsChipCountsOnce",
     {zone("acpitz"), chip("acpitz"), zone("pch_cannonlake"), chip("pch_cannonlake"), zone("cpu-thermal"),
      chip("cpu_thermal")},
     {"PMU acpitz", leftOut, "PMU pch_cannonlake", leftOut, "SOC cpu-thermal", leftOut}},
    {"aChipWithoutItsZoneCounts",
     {chip("acpitz"), chip("pch_cannonlake"), chip("cpu_thermal")},
     {"PMU acpitz", "PMU pch_cannonlake", "SOC cpu_thermal"}},
    {"twoOfAKindCountTwice",
     {chip("nvme", "Composite"), chip("nvme", "Composite")},
     {"NAND nvme Composite", "NAND nvme Composite"}},

    {"noSensorsNoNames", {}, {}},
};

INSTANTIATE_TEST_SUITE_P(Linux, SensorProductNames, ::testing::ValuesIn(rows),
                         [](const auto &row) { return row.param.behaviour; });

} // namespace
} // namespace orvalen
