#include "app/NativePlatform.h"
#include "app/OrvalenApp.h"
#include "app/Program.h"
#include "platform/posix/TerminationSignals.h"

int main(int argc, char **argv)
{
    using namespace orvalen;

    const TerminationSignals signals;
    const auto instance = nativeProgramInstance(ORVALEN_APPLICATION_ID);
    if (!instance->begin())
        return 0;
    prepareNativePlatform();
    Program program(argc, argv, signals);
    Platform::install(nativePlatform(QStringLiteral("Orvalen")));
    auto &platform = Platform::installed();

    OrvalenApp app;
    app.window.show();
    // Asks the desktop, whose answer need not be waited for: a window first.
    platform.dispatch->onMain([&] { app.window.followColorScheme(*platform.colorScheme); });
    app.beginWhenSeen(*instance, {&app.window});
    program.run();
}
