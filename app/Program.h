#pragma once

#include <QApplication>
#include <QSocketNotifier>

#include <functional>
#include <string_view>
#include <vector>

namespace orvalen {

class ProgramInstance;
class TerminationSignals;

/// The process around the windows: who we are to Qt and the desktop, the event loop, and the end. One per process.
class Program
{
public:
    /// `signals` must outlive the program.
    Program(int &argc, char **argv, const TerminationSignals &signals);

    /// From now on the desktop and later starts of the program are answered: they show `windows`, the last one before
    /// all others and with the keyboard, or have an action performed. Everything must outlive the program.
    void answer(ProgramInstance &instance, std::vector<QWidget *> windows,
                std::function<void(std::string_view action)> performAction);

    /// Runs the event loop and ends the process with its result; polite termination signals end it with 0.
    [[noreturn]] void run();

private:
    QApplication application;
    QSocketNotifier termination;
};

} // namespace orvalen
