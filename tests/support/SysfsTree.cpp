#include "tests/support/SysfsTree.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace orvalen::test {

namespace fs = std::filesystem;

namespace {

std::string trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

/// The two sides of a line, if `sign` is in it.
bool split(std::string_view line, std::string_view sign, std::string &left, std::string &right)
{
    const auto at = line.find(sign);
    if (at == std::string_view::npos)
        return false;
    left = trimmed(line.substr(0, at));
    right = trimmed(line.substr(at + sign.size()));
    return true;
}

} // namespace

SysfsTree::SysfsTree(std::string_view description)
{
    std::string pattern = (fs::temp_directory_path() / "sysfs-tree-XXXXXX").string();
    if (!::mkdtemp(pattern.data()))
        throw std::system_error(errno, std::generic_category(), pattern);
    folder = pattern;
    add(description);
}

SysfsTree::~SysfsTree()
{
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

void SysfsTree::add(std::string_view description)
{
    fs::path section;
    std::string left;
    std::string right;
    std::istringstream lines{std::string(description)};
    for (std::string raw; std::getline(lines, raw);) {
        const auto line = trimmed(raw);
        if (line.empty())
            continue;
        if (line.front() == '[' && line.back() == ']') {
            section = line.substr(1, line.size() - 2);
            fs::create_directories(folder / section);
        } else if (split(line, " ->", left, right)) {
            fs::create_directories((folder / section / left).parent_path());
            fs::remove_all(folder / section / left);
            fs::create_symlink(right, folder / section / left);
        } else if (split(line, " =", left, right)) {
            write((section / left).string(), right);
        } else if (line.back() == '/') {
            const auto inner = folder / section / line.substr(0, line.size() - 1);
            fs::remove_all(inner);
            fs::create_directories(inner);
        } else {
            throw std::invalid_argument("no line of a tree: " + line);
        }
    }
}

void SysfsTree::write(std::string_view file, std::string_view value)
{
    fs::create_directories(path(file).parent_path());
    std::ofstream stream(path(file));
    stream << value;
    if (!value.empty())
        stream << '\n';
    if (!stream.flush())
        throw std::runtime_error("cannot write " + std::string(file));
}

void SysfsTree::remove(std::string_view file)
{
    if (fs::remove_all(path(file)) == 0)
        throw std::runtime_error("nothing to remove: " + std::string(file));
}

void SysfsTree::makeHang(std::string_view file)
{
    fs::remove_all(path(file));
    if (::mkfifo(path(file).c_str(), 0600) != 0) // opened for reading, it waits for a writer
        throw std::system_error(errno, std::generic_category(), std::string(file));
}

void SysfsTree::answer(std::string_view file, std::string_view value)
{
    const auto pipe = path(file).string() + ".pipe";
    fs::rename(path(file), pipe);
    write(file, value);
    const int writer = ::open(pipe.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC); // fails where nobody hangs
    if (writer >= 0) {
        const std::string line = std::string(value) + "\n";
        if (::write(writer, line.data(), line.size()) < 0)
            throw std::system_error(errno, std::generic_category(), std::string(file));
        ::close(writer);
    }
    fs::remove(pipe);
}

} // namespace orvalen::test
