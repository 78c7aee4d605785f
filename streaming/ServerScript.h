#pragma once

#include <string>
#include <string_view>

namespace orvalen {

/// The text that stands for the stream server where everybody looks for it: a script that names `serverProgram`, an
/// absolute path, as its interpreter, so that running it serves the screen. (Systems cannot run a script whose
/// interpreter's path has blanks in it or is longer than some 250 bytes; starting the program itself does not care.)
[[nodiscard]] std::string serverScript(std::string_view serverProgram);

} // namespace orvalen
