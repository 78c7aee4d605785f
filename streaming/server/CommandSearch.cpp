#include "streaming/server/CommandSearch.h"

#include <cstdlib>
#include <memory>

#include "platform/posix/SearchPath.h"

namespace orvalen {

CommandSearch::CommandSearch(std::string_view command, std::string_view ownFolder)
    : command(command), ownFolder(ownFolder)
{
}

bool CommandSearch::isIn(std::string_view folder)
{
    candidate.assign(folder.empty() ? "." : folder).append("/").append(command);
    return search_path::isProgram(candidate);
}

const char *CommandSearch::find(std::string_view searchPath)
{
    for (;;) {
        const auto colon = searchPath.find(':');
        if (isIn(searchPath.substr(0, colon)))
            return candidate.c_str();
        if (colon == std::string_view::npos)
            break;
        searchPath.remove_prefix(colon + 1);
    }
    return !ownFolder.empty() && isIn(ownFolder) ? candidate.c_str() : nullptr;
}

std::string folderOfProgram(std::string_view invokedAs, std::string_view searchPath)
{
    std::string file(invokedAs);
    if (file.find('/') == std::string::npos) {
        CommandSearch search(invokedAs, {});
        const char *const found = file.empty() ? nullptr : search.find(searchPath);
        if (!found)
            return {};
        file = found;
    }
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(file.c_str(), nullptr), &std::free);
    if (!resolved)
        return {};
    const std::string_view whole(resolved.get());
    return std::string(whole.substr(0, whole.rfind('/')));
}

std::string_view environmentSearchPath()
{
    const char *const path = std::getenv("PATH");
    return path ? path : "/usr/bin:/bin";
}

} // namespace orvalen
