#pragma once

#include <QApplication>
#include <QSocketNotifier>

#include "platform/posix/TerminationSignals.h"

namespace orvalen {

/// The process around the windows: who we are to Qt and the desktop, the event loop, and the end. One per process.
class Program
{
public:
    Program(int &argc, char **argv);

    /// Runs the event loop and ends the process with its result; polite termination signals end it with 0.
    [[noreturn]] void run();

private:
    TerminationSignals signals;
    QApplication application;
    QSocketNotifier termination;
};

} // namespace orvalen
