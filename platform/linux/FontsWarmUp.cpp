#include "platform/linux/FontsWarmUp.h"

#include <system_error>
#include <thread>

#include <fontconfig/fontconfig.h>

namespace orvalen {

void warmUpFonts()
try {
    std::thread([] { FcInit(); }).detach(); // fontconfig serves any thread; whoever asks meanwhile waits for it
} catch (const std::system_error &) {
}

} // namespace orvalen
