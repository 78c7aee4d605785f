#include "platform/posix/SearchPath.h"

#include <sys/stat.h>
#include <unistd.h>

namespace orvalen::search_path {

bool isProgram(const std::string &path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

std::optional<std::string> find(std::string_view name, std::string_view searchPath, RelativeFolders relativeFolders)
{
    while (!searchPath.empty()) {
        const auto colon = searchPath.find(':');
        std::string program(searchPath.substr(0, colon));
        searchPath.remove_prefix(colon == std::string_view::npos ? searchPath.size() : colon + 1);
        const bool isWanted = program.starts_with('/') || relativeFolders == RelativeFolders::follow;
        program.append(program.empty() ? "./" : "/").append(name);
        if (isWanted && isProgram(program))
            return program;
    }
    return std::nullopt;
}

} // namespace orvalen::search_path
