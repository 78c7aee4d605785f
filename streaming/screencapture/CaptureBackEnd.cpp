#include "streaming/screencapture/CaptureBackEnd.h"

#include "streaming/screencapture/CaptureError.h"

namespace orvalen {

CaptureBackEnd &firstAvailable(const CaptureBackEnds &backEnds)
{
    std::string obstacle = "Nothing here can capture a screen.";
    for (const auto &backEnd : backEnds) {
        obstacle = backEnd->obstacle();
        if (obstacle.empty())
            return *backEnd;
    }
    throw CaptureError(obstacle);
}

} // namespace orvalen
