#include "streaming/server/CaptureToFile.h"

#include <array>
#include <charconv>
#include <exception>
#include <thread>

#include "platform/posix/PrivateFile.h"
#include "streaming/server/Descriptor.h"

namespace orvalen {

CaptureToFile::CaptureToFile(CaptureCommand &command, std::string_view filePrefix)
    : command(command), filePrefix(filePrefix)
{
}

FrameSource::Time CaptureToFile::now() noexcept
{
    return std::chrono::steady_clock::now();
}

void CaptureToFile::sleepUntil(Time time) noexcept
{
    std::this_thread::sleep_until(time);
}

const std::filesystem::path &CaptureToFile::fileOf(std::int64_t display)
{
    const std::lock_guard lock(mutex);
    auto &file = files[display];
    if (file.empty())
        file = filePrefix + std::to_string(display) + contract::captureFileSuffix;
    return file;
}

FrameSource::Capture CaptureToFile::capture(std::int64_t display) noexcept
{
    const std::filesystem::path *file = nullptr;
    try {
        file = &fileOf(display);
    } catch (const std::exception &) {
        return {};
    }
    if (!private_file::isOursOrAbsent(*file))
        return {};

    std::array<char, 24> number{}; // its end is a zero
    std::to_chars(number.data(), number.data() + number.size() - 1, display);
    const char *const ofMain[] = {contract::captureCommand, "-x", "-t", "jpg", file->c_str(), nullptr};
    const char *const ofOther[] = {
        contract::captureCommand, "-x", "-t", "jpg", "-D", number.data(), file->c_str(), nullptr};
    if (!command.run(display > 1 ? ofOther : ofMain))
        return {};

    const Descriptor opened(private_file::openForReading(*file));
    return {true, opened ? Frame::ofFile(opened.get(), limits::frameBytes) : Frame()};
}

} // namespace orvalen
