#pragma once

#include "platform/Dispatch.h"

namespace orvalen {

/// Gives the calling thread its quality of service, with no priority below that of its class. A thread that the system
/// does not let have it goes on as it is.
void setThreadQuality(QualityOfService quality);

} // namespace orvalen
