#pragma once

#include <string>
#include <vector>

namespace orvalen::fake {

// The menu bar

struct MenuBar
{
    bool itemsHaveButtons = true;
    std::vector<std::string> symbols = {}; ///< That the system knows.
};

/// A bar without items. Closing it frees what belongs to the system itself.
void openMenuBar(const MenuBar &menuBar);
void closeMenuBar();

/// The user clicks the item that was put into the bar last; nothing where there is none.
void clickStatusItem();

// The application

struct Window
{
    std::string name;
    bool isVisible = true;
    bool isMiniaturized = false;
    bool canBecomeKeyWindow = true;
};

/// Makes the shared application object, which lists these windows.
void startApplication(const std::vector<Window> &windows);
void endApplication();

/// As the user does it. No window is on the screen until it is unhidden.
void hideApplication();

// The session

struct RunningApplication
{
    std::string bundleIdentifier;
    int processIdentifier = 0;
    bool isTerminated = false;
};

/// What the system knows to be running.
void setRunningApplications(const std::vector<RunningApplication> &applications);

} // namespace orvalen::fake
