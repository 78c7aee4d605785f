#pragma once

#include <QApplication>
#include <QSocketNotifier>

namespace orvalen {

class TerminationSignals;

/// The process around the windows: who we are to Qt and the desktop, the event loop, and the end. One per process.
class Program
{
public:
    /// `signals` must outlive the program.
    Program(int &argc, char **argv, const TerminationSignals &signals);

    /// Runs the event loop and ends the process with its result; polite termination signals end it with 0, here as
    /// before.
    [[noreturn]] void run();

private:
    const TerminationSignals &signals;
    QApplication application;
    QSocketNotifier termination;
};

} // namespace orvalen
