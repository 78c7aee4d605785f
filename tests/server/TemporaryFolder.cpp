#include "tests/server/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace orvalen::test {

TemporaryFolder::TemporaryFolder()
{
    auto name = (std::filesystem::temp_directory_path() / "orvalen-server-test-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error("no temporary folder");
    folder = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::filesystem::path TemporaryFolder::write(std::string_view name, std::string_view contents, bool isProgram) const
{
    auto file = folder / name;
    std::ofstream(file) << contents;
    if (isProgram)
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file;
}

std::string contentsOf(const std::filesystem::path &file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

FirstOnSearchPath::FirstOnSearchPath(const std::filesystem::path &folder) : before(std::getenv("PATH"))
{
    setenv("PATH", (folder.string() + ":" + before).c_str(), 1);
}

FirstOnSearchPath::~FirstOnSearchPath()
{
    setenv("PATH", before.c_str(), 1);
}

} // namespace orvalen::test
