#include <QApplication>

#include "app/NativePlatform.h"
#include "app/Program.h"
#include "core/AppState.h"
#include "ui/MainView.h"

int main(int argc, char **argv)
{
    using namespace orvalen;

    introduceProgram();
    const QApplication application(argc, argv);
    Platform::install(nativePlatform(QStringLiteral("Orvalen")));

    MainView window(AppState::shared(), *Platform::installed().urls);
    window.followColorScheme(*Platform::installed().colorScheme);
    window.show();
    runProgram();
}
