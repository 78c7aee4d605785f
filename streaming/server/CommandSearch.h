#pragma once

#include <string>
#include <string_view>

namespace orvalen {

/// Finds a command the way a shell does, and if the search path has none, beside our own program. One thread at a time.
class CommandSearch
{
public:
    /// `ownFolder`: where our own program lies; empty if that is not known.
    CommandSearch(std::string_view command, std::string_view ownFolder);

    /// The command's file, until the next call; null without one. An empty entry of the path is the current folder.
    [[nodiscard]] const char *find(std::string_view searchPath);

private:
    bool isIn(std::string_view folder);

    const std::string command;
    const std::string ownFolder;
    std::string candidate; // kept: it has grown to its size once
};

/// The folder of the program that was started as `invokedAs` (the zeroth argument, which names the file or, without a
/// slash, a command on the search path), links resolved; empty if it cannot be found.
[[nodiscard]] std::string folderOfProgram(std::string_view invokedAs, std::string_view searchPath);

/// The environment's search path, or the system's own if there is none.
[[nodiscard]] std::string_view environmentSearchPath();

} // namespace orvalen
