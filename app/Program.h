#pragma once

namespace orvalen {

/// Tells Qt and the desktop who we are. Before the application object is made.
void introduceProgram();

/// Runs the event loop and ends the process with its result.
[[noreturn]] void runProgram();

} // namespace orvalen
