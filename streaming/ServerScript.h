#pragma once

#include <string>
#include <string_view>

namespace orvalen {

/// The text that stands for the stream server where everybody looks for it: a script that names `serverProgram`, an
/// absolute path, as its interpreter, so that running it serves the screen.
[[nodiscard]] std::string serverScript(std::string_view serverProgram);

} // namespace orvalen
