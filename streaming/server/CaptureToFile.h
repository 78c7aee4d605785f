#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "streaming/server/CaptureCommand.h"
#include "streaming/server/Contract.h"
#include "streaming/server/FrameSource.h"

namespace orvalen {

/// Frames that the capture command leaves in a file per display. The files lie in a folder that everybody may write to:
/// where somebody else's thing has the file's name, no picture is taken.
class CaptureToFile : public FrameSource
{
public:
    explicit CaptureToFile(CaptureCommand &command, std::string_view filePrefix = contract::captureFilePrefix);

    [[nodiscard]] Time now() noexcept override;
    void sleepUntil(Time time) noexcept override;
    [[nodiscard]] Capture capture(std::int64_t display) noexcept override;

private:
    const std::filesystem::path &fileOf(std::int64_t display);

    CaptureCommand &command;
    const std::string filePrefix;
    std::mutex mutex;
    std::map<std::int64_t, std::filesystem::path> files; ///< As many as there are displays that are kept.
};

} // namespace orvalen
