#pragma once

namespace orvalen {

/// Has the system's font configuration read by a thread of its own, while the main thread still connects to its
/// display: Qt needs it before the first text, and reading it takes a fifth of the start. Call it first of all. No
/// thread to be had: it is read when it is needed, as ever.
void warmUpFonts();

} // namespace orvalen
