#include "tests/platform/macos/fakes/Calls.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

namespace orvalen::fake {

namespace {

std::mutex mutex;
std::vector<std::string> calls;

} // namespace

void note(std::string call)
{
    const std::lock_guard lock(mutex);
    calls.push_back(std::move(call));
}

void note(const char *format, ...)
{
    std::array<char, 1024> line{};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
    note(std::string(line.data()));
}

std::vector<std::string> takeCalls()
{
    const std::lock_guard lock(mutex);
    return std::exchange(calls, {});
}

} // namespace orvalen::fake
