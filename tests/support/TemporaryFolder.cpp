#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/stat.h>

namespace orvalen::test {

TemporaryFolder::TemporaryFolder()
{
    auto name = (std::filesystem::temp_directory_path() / "orvalen-test-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error("no temporary folder");
    folder = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::vector<std::string> TemporaryFolder::names() const
{
    std::vector<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::filesystem::path TemporaryFolder::write(std::string_view name, std::string_view contents, bool isProgram) const
{
    auto file = folder / name;
    test::write(file, contents);
    if (isProgram)
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file;
}

void write(const std::filesystem::path &file, std::string_view contents)
{
    std::ofstream(file, std::ios::binary) << contents;
}

std::string contentsOf(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

unsigned modeOf(const std::filesystem::path &file)
{
    struct stat status = {};
    return ::lstat(file.c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
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
