#include "streaming/screencapture/CaptureBackEnds.h"

#include "streaming/screencapture/CaptureBackEndX11.h"

namespace orvalen {

CaptureBackEnds captureBackEnds()
{
    CaptureBackEnds backEnds;
    backEnds.push_back(std::make_unique<CaptureBackEndX11>());
    return backEnds;
}

} // namespace orvalen
