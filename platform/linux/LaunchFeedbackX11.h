#pragma once

#include <string>

namespace orvalen {

/// Tells an X desktop that what it launched under that startup id has been seen to: it need not show a start in
/// progress any longer. By default on the display that the environment names; not in a Wayland session, where starts
/// are none of an X server's business. Returns at once: a server that hangs keeps a thread of its own waiting.
void endLaunchFeedback(const std::string &startupId, const std::string &display = {});

} // namespace orvalen
