#pragma once

#include <QString>

#include <memory>
#include <string>

#include "platform/Platform.h"
#include "platform/ProgramInstance.h"

namespace orvalen {

/// `name`: of the program, as an application id. Wants no application object, so that a second start costs next to
/// nothing.
[[nodiscard]] std::unique_ptr<ProgramInstance> nativeProgramInstance(std::string name);

/// Tells the desktop that the launch to which it gave this token has been seen to, so that it need not wait for a
/// window.
void endLaunch(const std::string &token);

/// Early in the entry point: a process that outlives its readers, and what the system can get ready on its own while
/// the program starts.
void prepareNativePlatform();

/// The machine that the program runs on: one adapter per service, chosen in this one place. Wants the application
/// object. `settingsName` is the name under which the user's settings are kept.
[[nodiscard]] Platform nativePlatform(const QString &settingsName);

} // namespace orvalen
