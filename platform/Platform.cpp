#include "platform/Platform.h"

#include <cstdlib>
#include <utility>

namespace orvalen {

namespace {

Platform *theOne = nullptr;

} // namespace

void Platform::install(Platform platform)
{
    const bool complete = platform.clock && platform.dispatch && platform.processors && platform.temperatureSensors &&
                          platform.powerSources && platform.inputIdleTime && platform.graphicsCopies &&
                          platform.settings && platform.sounds && platform.notifications && platform.urls &&
                          platform.colorScheme && platform.processes && platform.hostName && platform.interfaces &&
                          platform.pasteboard && platform.captureAccess && platform.speech && platform.files &&
                          platform.hotKeys && platform.application && platform.statusBar &&
                          !platform.streamServer.empty();
    if (theOne || !complete)
        std::abort();
    theOne = new Platform(std::move(platform));
}

Platform &Platform::installed()
{
    if (!theOne)
        std::abort();
    return *theOne;
}

} // namespace orvalen
