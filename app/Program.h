#pragma once

#include <QApplication>

namespace orvalen {

/// The process around the windows: who we are to Qt and the desktop, the event loop, and the end. One per process.
class Program
{
public:
    Program(int &argc, char **argv);

    /// Runs the event loop and ends the process with its result.
    [[noreturn]] void run();

private:
    QApplication application;
};

} // namespace orvalen
