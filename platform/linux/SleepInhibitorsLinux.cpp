#include "platform/linux/SleepInhibitorsLinux.h"

#include "platform/linux/SleepInhibitorLogind.h"
#include "platform/linux/SleepInhibitorPortal.h"
#include "platform/linux/SleepInhibitorPowerManagement.h"
#include "platform/linux/SleepInhibitorSessionManager.h"

namespace orvalen {

PowerAssertionsFirstGranted::Ways linuxSleepInhibitors(const SleepApplicant &applicant, const SleepPatience &patience)
{
    PowerAssertionsFirstGranted::Ways ways;
    ways.desktop.push_back(std::make_unique<SleepInhibitorPowerManagement>(applicant.name, patience.answer));
    ways.desktop.push_back(std::make_unique<SleepInhibitorSessionManager>(applicant.id, patience.answer));
    ways.desktop.push_back(std::make_unique<SleepInhibitorPortal>(patience));
    ways.withoutDesktop.push_back(std::make_unique<SleepInhibitorLogind>(applicant.name, patience.answer));
    return ways;
}

} // namespace orvalen
