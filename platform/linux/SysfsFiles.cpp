#include "platform/linux/SysfsFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <span>
#include <unistd.h>

namespace orvalen::sysfs {

namespace {

bool isDigit(char c)
{
    return '0' <= c && c <= '9';
}

/// Takes the run of digits at the front of `text`, without leading zeros.
std::string_view takeDigits(std::string_view &text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    auto digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

/// One read is one value: the kernel makes it up at that moment and gives it whole.
struct Answer
{
    std::optional<std::string_view> text;
    bool isGone = false;
};

Answer answer(const std::string &file, std::span<char> buffer)
{
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return {.text = std::nullopt, .isGone = errno == ENOENT || errno == ENOTDIR};
    ssize_t length = -1;
    do
        length = ::read(descriptor, buffer.data(), buffer.size());
    while (length < 0 && errno == EINTR);
    ::close(descriptor);
    if (length < 0)
        return {};
    std::string_view text(buffer.data(), static_cast<std::size_t>(length));
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ' || text.back() == '\0'))
        text.remove_suffix(1);
    return {.text = text};
}

} // namespace

bool comesBefore(std::string_view left, std::string_view right)
{
    while (!left.empty() && !right.empty()) {
        if (isDigit(left.front()) && isDigit(right.front())) {
            const auto a = takeDigits(left);
            const auto b = takeDigits(right);
            if (a.size() != b.size())
                return a.size() < b.size();
            if (a != b)
                return a < b;
        } else if (left.front() != right.front()) {
            return left.front() < right.front();
        } else {
            left.remove_prefix(1);
            right.remove_prefix(1);
        }
    }
    return left.size() < right.size();
}

std::optional<std::vector<std::string>> entries(const std::string &folder)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> open(::opendir(folder.c_str()), ::closedir);
    if (!open)
        return std::nullopt;
    std::vector<std::string> names;
    while (const dirent *entry = ::readdir(open.get())) {
        if (entry->d_name[0] != '.')
            names.emplace_back(entry->d_name);
    }
    std::sort(names.begin(), names.end(), comesBefore);
    return names;
}

std::optional<std::string> text(const std::string &file)
{
    std::array<char, 255> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by the read
    const auto [text, isGone] = answer(file, buffer);
    if (!text)
        return std::nullopt;
    return std::string(*text);
}

Number number(const std::string &file)
{
    std::array<char, 64> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by the read
    const auto [text, isGone] = answer(file, buffer);
    if (!text)
        return {.value = std::nullopt, .isGone = isGone};
    std::int64_t value = 0;
    const char *const end = text->data() + text->size();
    const auto [stop, error] = std::from_chars(text->data(), end, value);
    if (error != std::errc() || stop != end)
        return {};
    return {.value = value};
}

} // namespace orvalen::sysfs
