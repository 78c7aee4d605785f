#pragma once

#include "streaming/screencapture/CaptureBackEnd.h"

namespace orvalen {

/// Every way to capture a screen that this program knows, the best first.
[[nodiscard]] CaptureBackEnds captureBackEnds();

} // namespace orvalen
