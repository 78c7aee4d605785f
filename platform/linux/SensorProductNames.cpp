#include "platform/linux/SensorProductNames.h"

#include <algorithm>
#include <array>
#include <fnmatch.h>
#include <string_view>

namespace orvalen {

namespace {

using Kind = SensorSource::Kind;

enum class Words
{
    ofGroupOnly, ///< The product name is complete as it stands.
    ofSourceToo, ///< The source's own words follow.
};

/// Patterns are the shell's, without regard to case. Dashes in a zone's type count as underscores.
struct Rule
{
    std::optional<Kind> kind; ///< None: of any kind.
    const char *chip = nullptr;
    const char *label = nullptr;
    const char *onlyWithout = nullptr; ///< "chip label" of a better one, next to which this one is left out.
    const char *product = nullptr;     ///< Null: leave the sensor out.
    Words words = Words::ofGroupOnly;
};

constexpr auto anyOrNoLabel = "*";
constexpr auto cpuChip = "@(coretemp|k10temp|zenpower) *";

// The first rule that matches decides; a sensor that none matches is left out. Most that are left out on purpose need
// no rule: constants that pretend to be sensors (INT3400, SENn), radios, memory modules, sockets, a mouse's battery.
constexpr std::array rules{
    // Apple silicon. Labels have changed between kernels: "… Temp", "… Temperature".
    Rule{Kind::hwmonChip, "macsmc*", "*WiFi/BT Module*", nullptr, "PMU tdev4", Words::ofGroupOnly},
    Rule{Kind::hwmonChip, "macsmc*", "*SoC Backside*", nullptr, "PMU2 tdev4", Words::ofGroupOnly},
    Rule{Kind::hwmonChip, "macsmc*", "*Charge Regulator*", nullptr, "PMU tdev7", Words::ofGroupOnly},
    Rule{Kind::hwmonChip, "macsmc*", "*NAND Flash*", nullptr, "NAND CH0 temp", Words::ofGroupOnly},
    Rule{Kind::hwmonChip, "macsmc*", "*Battery Hotspot*", nullptr, "gas gauge battery", Words::ofGroupOnly},

    // The processor. Tctl may carry an offset. Zones and notebook controllers repeat what its own chip says.
    Rule{Kind::hwmonChip, "coretemp", "Package id *", nullptr, "SOC", Words::ofSourceToo},
    Rule{Kind::hwmonChip, "coretemp", "Core *", nullptr, "pACC", Words::ofSourceToo},
    Rule{Kind::hwmonChip, "@(k10temp|zenpower)", "@(Tdie|Tccd*)", nullptr, "SOC", Words::ofSourceToo},
    Rule{Kind::hwmonChip, "@(k10temp|zenpower)", "Tctl", "@(k10temp|zenpower) @(Tdie|Tccd*)", "SOC",
         Words::ofSourceToo},
    Rule{Kind::thermalZone, "@(x86_pkg_temp|B0D4|TCPU)", anyOrNoLabel, "coretemp *", "SOC", Words::ofSourceToo},
    Rule{std::nullopt, "@(cpu_thermal|soc_thermal)", anyOrNoLabel, nullptr, "SOC", Words::ofSourceToo},
    Rule{Kind::hwmonChip, "@(dell_smm|thinkpad)", "CPU", cpuChip, "SOC", Words::ofSourceToo},

    // Skin and board. An embedded controller also passes on sensors inside of parts, known by their labels.
    Rule{Kind::thermalZone, "TSKN", anyOrNoLabel, nullptr, "PMU tdev5", Words::ofSourceToo},
    Rule{Kind::hwmonChip, "dell_smm", "Ambient", nullptr, "PMU tdev5", Words::ofSourceToo},
    Rule{Kind::hwmonChip, "cros_ec", "*@(cpu|peci|soc|gpu|apu|ddr|dram|mem|batt|charg|ssd|nvme|wifi|wlan)*", nullptr,
         nullptr, Words::ofGroupOnly},
    Rule{Kind::hwmonChip, "cros_ec", anyOrNoLabel, nullptr, "PMU tdev5", Words::ofSourceToo},

    // On many laptops acpitz never moves, which one reading cannot tell: no part of the bridge, or it would ask for
    // heat for ever.
    Rule{std::nullopt, "@(acpitz|pch_*)", anyOrNoLabel, nullptr, "PMU", Words::ofSourceToo},
    Rule{Kind::hwmonChip, "dell_smm", "@(Other|SODIMM)", nullptr, "PMU", Words::ofSourceToo},
    Rule{Kind::hwmonChip, "thinkpad", "", nullptr, "PMU", Words::ofSourceToo},

    // Storage.
    Rule{Kind::hwmonChip, "nvme", "Composite", nullptr, "NAND", Words::ofSourceToo},
    Rule{Kind::hwmonChip, "drivetemp", anyOrNoLabel, nullptr, "NAND", Words::ofSourceToo},

    // Batteries, but not the one whose cells have been met above.
    Rule{Kind::battery, "macsmc*", anyOrNoLabel, "macsmc* *Battery Hotspot*", "gas gauge battery", Words::ofSourceToo},
    Rule{Kind::battery, "*", anyOrNoLabel, nullptr, "gas gauge battery", Words::ofSourceToo},

    // Graphics: in no group, as on the Mac.
    Rule{std::nullopt, "@(amdgpu|nouveau|i915|xe|nvidia)", anyOrNoLabel, nullptr, "GPU", Words::ofSourceToo},
};

bool matches(const char *pattern, const std::string &text)
{
    return ::fnmatch(pattern, text.c_str(), FNM_CASEFOLD | FNM_EXTMATCH) == 0;
}

std::string withUnderscores(std::string name)
{
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

/// The kernel shows many a thermal zone once more as a chip of the same name.
bool repeatsAZone(const SensorSource &source, const std::vector<SensorSource> &sources)
{
    return source.kind == Kind::hwmonChip && std::any_of(sources.begin(), sources.end(), [&](const auto &other) {
               return other.kind == Kind::thermalZone && withUnderscores(other.chip) == source.chip;
           });
}

bool hasChip(const char *pattern, const std::vector<SensorSource> &sources)
{
    return std::any_of(sources.begin(), sources.end(), [&](const auto &other) {
        return other.kind == Kind::hwmonChip && matches(pattern, other.chip + " " + other.label);
    });
}

/// Some firmware labels sensors in the very words that the groups go by.
bool speaksOfGroups(const SensorSource &source)
{
    static constexpr std::array<std::string_view, 6> words{"PMU", "SOC", "pACC", "eACC", "NAND", "battery"};
    return source.kind == Kind::hwmonChip && matches("@(macsmc*|coretemp|k10temp|zenpower)", source.chip) &&
           std::any_of(words.begin(), words.end(),
                       [&](auto word) { return source.label.find(word) != std::string::npos; });
}

std::optional<std::string> productName(const SensorSource &source, const std::vector<SensorSource> &sources)
{
    if (speaksOfGroups(source))
        return source.label;
    if (source.isOnRotatingDisk || repeatsAZone(source, sources))
        return std::nullopt;

    const auto chip = withUnderscores(source.chip);
    const auto rule = std::find_if(rules.begin(), rules.end(), [&](const Rule &candidate) {
        return (!candidate.kind || candidate.kind == source.kind) && matches(candidate.chip, chip) &&
               matches(candidate.label, source.label);
    });
    if (rule == rules.end() || !rule->product || (rule->onlyWithout && hasChip(rule->onlyWithout, sources)))
        return std::nullopt;

    std::string name = rule->product;
    if (rule->words == Words::ofSourceToo) {
        name += " " + source.chip;
        if (!source.label.empty())
            name += " " + source.label;
    }
    return name;
}

} // namespace

std::vector<std::optional<std::string>> productNames(const std::vector<SensorSource> &sources)
{
    std::vector<std::optional<std::string>> names;
    names.reserve(sources.size());
    for (const auto &source : sources)
        names.push_back(productName(source, sources));
    return names;
}

} // namespace orvalen
