#pragma once

#include "platform/ScreenCaptureAccess.h"

namespace orvalen {

/// The user's grant to the application's bundle, which holds for the programs that it starts as well. A new grant
/// counts from the next start on.
class ScreenCaptureAccessQuartz : public ScreenCaptureAccess
{
public:
    [[nodiscard]] bool isGranted() override;

    /// The system asks once; after that it is silent, and the user has to go to its settings.
    void request() override;
};

} // namespace orvalen
