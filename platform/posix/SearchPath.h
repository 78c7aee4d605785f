#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Finding the programs that a person would get by typing their name.
namespace orvalen::search_path {

/// A regular file that this user may run.
[[nodiscard]] bool isProgram(const std::string &path);

/// What to do with folders that depend on where this process stands; an empty one is that place itself.
enum class RelativeFolders
{
    ignore,
    follow,
};

/// The program of that name in the first folder that has one. `searchPath`: folders with colons between them; empty if
/// there are none.
[[nodiscard]] std::optional<std::string> find(std::string_view name, std::string_view searchPath,
                                              RelativeFolders relativeFolders = RelativeFolders::ignore);

} // namespace orvalen::search_path
