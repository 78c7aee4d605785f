#pragma once

#include <string>

namespace orvalen {

/// Names the calling thread for debuggers and process lists, cut to what the system takes.
void nameThisThread(const std::string &name);

} // namespace orvalen
