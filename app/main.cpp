#include "app/NativePlatform.h"
#include "app/Program.h"
#include "core/AppState.h"
#include "ui/MainView.h"

int main(int argc, char **argv)
{
    using namespace orvalen;

    Program program(argc, argv);
    Platform::install(nativePlatform(QStringLiteral("Orvalen")));
    auto &platform = Platform::installed();

    MainView window(AppState::shared(), *platform.urls);
    window.followColorScheme(*platform.colorScheme);
    window.show();
    program.run();
}
