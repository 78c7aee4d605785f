#pragma once

#include <string>

namespace orvalen {

/// Tells an X desktop that what it launched under that startup id has been seen to: it need not show a start in
/// progress any longer. By default on the display that the environment names.
void endLaunchFeedback(const std::string &startupId, const std::string &display = {});

} // namespace orvalen
