#pragma once

#include <vector>

#include "core/AppDelegate.h"
#include "ui/MainView.h"

namespace orvalen {

class ProgramInstance;

/// What a person meets of the program: its window, and the delegate that looks after keys, tray and what the desktop
/// asks for. Of the services of the installed platform. One per process, for as long as that runs.
class OrvalenApp
{
public:
    OrvalenApp();

    MainView window;
    AppDelegate appDelegate;

    /// Has the delegate begin when the window has been painted. From then on the desktop and later starts of the
    /// program are answered: `windows` are shown, also closed ones, and brought forward by the delegate, or it performs
    /// an action. Everything must outlive the process's event loop.
    void beginWhenSeen(ProgramInstance &instance, std::vector<QWidget *> windows);
};

} // namespace orvalen
