#pragma once

#include <QString>

#include "platform/Platform.h"

namespace orvalen {

/// What the system can get ready on its own while the program starts. The first call of the entry point.
void prepareNativePlatform();

/// The machine that the program runs on: one adapter per service, chosen in this one place. Wants the application
/// object. `settingsName` is the name under which the user's settings are kept.
[[nodiscard]] Platform nativePlatform(const QString &settingsName);

} // namespace orvalen
