#include "tests/platform/macos/fakes/PowerSources.h"

#include <IOKit/ps/IOPowerSources.h>

#include <cstdlib>
#include <map>
#include <string>
#include <utility>

#include "tests/platform/macos/fakes/AutoreleasePool.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/CoreFoundation.h"

namespace orvalen::fake {

namespace {

PowerSourceList powerSources;
std::map<CFTypeRef, std::vector<CFTypeRef>> descriptionsOf; // by blob

} // namespace

void setPowerSources(PowerSourceList list)
{
    powerSources = std::move(list);
}

} // namespace orvalen::fake

using namespace orvalen::fake;

CFTypeRef IOPSCopyPowerSourcesInfo()
{
    note("IOPSCopyPowerSourcesInfo");
    if (!powerSources.hasBlob)
        return nullptr;
    // On the way to an answer the system makes objects that only a pool gives back.
    (void)autorelease(makeString("on the way"));
    std::vector<CFTypeRef> descriptions;
    std::vector<CFTypeRef> owned;
    for (const auto &make : powerSources.descriptions) {
        descriptions.push_back(make());
        if (descriptions.back())
            owned.push_back(descriptions.back());
    }
    const auto *const blob = makeOpaque("blob", std::move(owned));
    descriptionsOf[blob] = std::move(descriptions);
    return blob;
}

CFArrayRef IOPSCopyPowerSourcesList(CFTypeRef blob)
{
    note("IOPSCopyPowerSourcesList " + nameOf(blob));
    if (!powerSources.hasList)
        return nullptr;
    std::vector<CFTypeRef> sources;
    for (std::size_t i = 0; i < descriptionsOf.at(blob).size(); ++i)
        sources.push_back(makeOpaque("source" + std::to_string(i + 1)));
    return static_cast<CFArrayRef>(makeArray(std::move(sources)));
}

CFDictionaryRef IOPSGetPowerSourceDescription(CFTypeRef blob, CFTypeRef source)
{
    const auto name = nameOf(source);
    note("IOPSGetPowerSourceDescription " + nameOf(blob) + ' ' + name);
    const auto index = std::stoul(name.substr(std::string("source").size())) - 1;
    return static_cast<CFDictionaryRef>(descriptionsOf.at(blob).at(index));
}
