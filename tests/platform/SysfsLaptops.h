#pragma once

namespace orvalen::test {

/// Apple silicon: no die is told about. The battery shows as a power supply and once more as a chip.
inline constexpr auto appleSiliconLaptop = R"(
    [class/hwmon/hwmon0]
    name = macsmc_battery
    temp1_input = 30600
    temp1_label = temp
    [class/hwmon/hwmon1]
    name = nvme
    temp1_input = 34850
    temp1_label = Composite
    [class/hwmon/hwmon2]
    name = macsmc_hwmon
    temp1_input = 33900
    temp1_label = Charge Regulator Temp
    temp2_input = 35400
    temp2_label = WiFi/BT Module Temp
    temp3_input = 36500
    temp3_label = NAND Flash Temperature
    temp4_input = 31200
    temp4_label = Battery Hotspot
    power1_input = 4310000
    power1_label = Total System Power
    [class/thermal/cooling_device0]
    type = cpufreq-cpu0
    [class/power_supply/macsmc-ac]
    type = Mains
    online = 1
    [class/power_supply/macsmc-battery]
    type = Battery
    scope = System
    status = Charging
    capacity = 78
    temp = 306
)";

/// A notebook with everything that such machines repeat: zones as chips, the processor three times over.
inline constexpr auto intelLaptop = R"(
    [class/hwmon/hwmon0]
    name = AC
    [class/hwmon/hwmon1]
    name = acpitz
    temp1_input = 27800
    [class/hwmon/hwmon2]
    name = nvme
    temp1_input = 38850
    temp1_label = Composite
    temp1_crit = 84850
    temp2_input = 61850
    temp2_label = Sensor 1
    [class/hwmon/hwmon3]
    name = BAT0
    in0_input = 12430
    [class/hwmon/hwmon4]
    name = pch_cannonlake
    temp1_input = 44000
    [class/hwmon/hwmon5]
    name = iwlwifi_1
    temp1_input = 36000
    [class/hwmon/hwmon6]
    name = coretemp
    temp1_input = 47000
    temp1_label = Package id 0
    temp1_max = 100000
    temp2_input = 45000
    temp2_label = Core 0
    temp10_input = 46000
    temp10_label = Core 8
    temp6_input = 47000
    temp6_label = Core 4
    [class/hwmon/hwmon10]
    name = dell_smm
    fan1_input = 0
    temp1_input = 48000
    temp1_label = CPU
    temp2_input = 35000
    temp2_label = Ambient
    temp3_input = 39000
    temp3_label = SODIMM
    temp4_input = 37000
    temp4_label = Other
    temp5_input = 41000
    temp5_label = GPU
    [class/thermal/cooling_device0]
    type = Processor
    [class/thermal/thermal_zone0]
    type = INT3400 Thermal
    temp = 20000
    [class/thermal/thermal_zone1]
    type = acpitz
    temp = 27800
    [class/thermal/thermal_zone2]
    type = SEN1
    temp = 50
    [class/thermal/thermal_zone3]
    type = TSKN
    temp = 34050
    [class/thermal/thermal_zone4]
    type = B0D4
    temp = 47000
    [class/thermal/thermal_zone5]
    type = TCPU
    temp = 47000
    [class/thermal/thermal_zone6]
    type = pch_cannonlake
    temp = 44000
    [class/thermal/thermal_zone7]
    type = x86_pkg_temp
    temp = 47000
    [class/thermal/thermal_zone10]
    type = iwlwifi_1
    temp = 36000
    [class/power_supply/AC]
    type = Mains
    online = 0
    [class/power_supply/BAT0]
    type = Battery
    present = 1
    status = Discharging
    capacity = 64
    [class/power_supply/ucsi-source-psy-USBC000:001]
    type = USB
    scope = System
    online = 0
)";

/// Two drives, a processor with an offset in one of its values, a mouse with a battery of its own.
inline constexpr auto amdLaptop = R"(
    [class/hwmon/hwmon0]
    name = nvme
    temp1_input = 40850
    temp1_label = Composite
    [class/hwmon/hwmon1]
    name = thinkpad
    temp1_input = 51000
    temp1_label = CPU
    temp2_input = 0
    temp2_label = GPU
    temp3_input = 43000
    temp8_input = -128000
    [class/hwmon/hwmon2]
    name = acpitz
    temp1_input = 51000
    [class/hwmon/hwmon3]
    name = k10temp
    temp1_input = 77500
    temp1_label = Tctl
    temp2_input = 50500
    temp2_label = Tdie
    temp3_input = 49750
    temp3_label = Tccd1
    [class/hwmon/hwmon4]
    name = amdgpu
    temp1_input = 46000
    temp1_label = edge
    [class/hwmon/hwmon5]
    name = mt7921_phy0
    temp1_input = 41000
    [class/hwmon/hwmon6]
    name = r8169_0_200:00
    temp1_input = 48500
    [class/hwmon/hwmon12]
    name = nvme
    temp1_input = 36850
    temp1_label = Composite
    [class/thermal/thermal_zone0]
    type = acpitz
    temp = 51000
    [class/power_supply/AC]
    type = Mains
    online = 0
    [class/power_supply/BAT0]
    type = Battery
    capacity = 91
    temp = 312
    [class/power_supply/BAT1]
    type = Battery
    capacity = 40
    temp = 298
    [class/power_supply/hidpp_battery_0]
    type = Battery
    scope = Device
    capacity = 5
    temp = 250
    [class/power_supply/ucsi-source-psy-USBC000:001]
    type = USB
    online = 1
)";

/// A machine that has places for sensors and power supplies, and nothing in them.
inline constexpr auto emptyMachine = R"(
    [class/hwmon]
    [class/thermal]
    [class/power_supply]
)";

} // namespace orvalen::test
