#pragma once

#include <cstddef>

namespace orvalen {

/// Makes the process independent of how it was started. Before any thread, file or socket of ours.
/// - Files of ours are for their owner alone.
/// - A broken connection is an error like any other, and no signal.
/// - All other signals mean what they usually mean, also if whoever started us had them blocked or ignored: signals end
///   us, and we wait for children.
/// - Standard streams that are closed lead nowhere: no file of the capture command becomes one.
void prepareProcess();

/// Asks for as many descriptors as may be had, and says how many connections that makes.
[[nodiscard]] std::size_t connectionsPossible();

} // namespace orvalen
