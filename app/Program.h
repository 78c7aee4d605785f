#pragma once

#include <QApplication>
#include <QSocketNotifier>

#include <vector>

namespace orvalen {

class AppDelegate;
class ProgramInstance;
class TerminationSignals;

/// The process around the windows: who we are to Qt and the desktop, the event loop, and the end. One per process.
class Program
{
public:
    /// `signals` must outlive the program.
    Program(int &argc, char **argv, const TerminationSignals &signals);

    /// From now on the desktop and later starts of the program are answered: `windows` are shown, also closed ones, and
    /// brought forward by the delegate, or it performs an action. Everything must outlive the program.
    static void answer(ProgramInstance &instance, std::vector<QWidget *> windows, AppDelegate &delegate);

    /// Runs the event loop and ends the process with its result; polite termination signals end it with 0, here as
    /// before.
    [[noreturn]] void run();

private:
    const TerminationSignals &signals;
    QApplication application;
    QSocketNotifier termination;
};

} // namespace orvalen
