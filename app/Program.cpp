#include "app/Program.h"

#include <QLoggingCategory>

#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "platform/posix/TerminationSignals.h"

namespace orvalen {

namespace {

int &introduced(int &argc)
{
    // Nobody reads warnings of the toolkit on a black screen; what is critical still goes to standard error.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=false\n*.warning=false"));
    QCoreApplication::setOrganizationName(QStringLiteral("Quenmark"));
    QCoreApplication::setApplicationName(QStringLiteral("Orvalen"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Orvalen"));
    QGuiApplication::setDesktopFileName(QStringLiteral(ORVALEN_APPLICATION_ID));
    QGuiApplication::setQuitOnLastWindowClosed(false); // the display is kept warm without a window, too
    return argc;
}

} // namespace

Program::Program(int &argc, char **argv, const TerminationSignals &signals)
    : signals(signals), application(introduced(argc), argv), termination(signals.descriptor(), QSocketNotifier::Read)
{
    // Not by way of the windows, which would be asked first.
    QObject::connect(&termination, &QSocketNotifier::activated, &application, [] { QCoreApplication::exit(0); });
    std::setlocale(LC_NUMERIC, "C"); // Qt has set the user's; our numbers have a point everywhere
}

void Program::run()
{
    signals.attend();
    const int status = QApplication::exec();
    // A pulse may be under way, with threads that use the platform and the rules. Settings are on disk already, so the
    // process ends here as it stands, and every heater with it, instead of taking the house down around them.
    std::fflush(nullptr);
    std::_Exit(status);
}

} // namespace orvalen
