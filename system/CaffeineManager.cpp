#include "system/CaffeineManager.h"

#include <utility>

#include "platform/Platform.h"
#include "platform/PowerAssertions.h"

namespace orvalen {

namespace {

constexpr std::uint32_t levelOn = 255; // kIOPMAssertionLevelOn

} // namespace

CaffeineManager::CaffeineManager(PowerAssertions &assertions) : assertions(assertions) {}

CaffeineManager::~CaffeineManager() = default;

CaffeineManager &CaffeineManager::shared()
{
    static auto *const manager = new CaffeineManager(*Platform::installed().powerAssertions);
    return *manager;
}

void CaffeineManager::toggle()
{
    if (isActive)
        disable();
    else
        enable();
}

void CaffeineManager::enable()
{
    if (isActive)
        return;
    const auto granted = assertions.create({"PreventUserIdleSystemSleep", levelOn, "Orvalen: Prevent System Sleep"});
    if (!granted)
        return;
    assertionID = *granted;
    isActive = true;
}

void CaffeineManager::disable()
{
    if (!isActive)
        return;
    assertions.release(std::exchange(assertionID, 0));
    isActive = false;
}

} // namespace orvalen
