#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>
#include <xcb/xcb.h>

#include "streaming/screencapture/Display.h"

namespace orvalen::test {

/// Somebody who draws on an X server's screen, on which there is no pointer at first. Each call returns when the server
/// has done it; throws std::runtime_error when there is no server (any more).
class Screen
{
public:
    explicit Screen(const std::string &display);
    ~Screen();

    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    void fill(const Rectangle &area, std::uint32_t rgb);
    /// Four bytes a pixel, row by row, as the server stores them.
    void paint(const Rectangle &area, const std::vector<std::uint8_t> &pixels);

    /// Calls a part of the screen a monitor. `isReal`: it stands for the output that the server has, which alone would
    /// be a monitor of its own.
    void setMonitor(const std::string &name, const Rectangle &area, bool isPrimary, bool isReal);

    /// From now on there is a pointer: a square of one colour, which points with one of its pixels.
    void showPointer(int side, int hotSpotX, int hotSpotY, std::uint32_t rgb);
    void movePointer(int x, int y);

    /// The server covers the screen with a window of its own, as lockers do.
    void startScreenSaver();
    /// The server turns the display dark, as after some minutes without input.
    void goDark();

private:
    void setPointer(int side, int filled, int hotSpotX, int hotSpotY, std::uint32_t rgb);
    void saveScreen(std::uint8_t howToBlank);
    void sync();

    xcb_connection_t *const xcb;
    xcb_screen_t *screen = nullptr;
    xcb_gcontext_t context = 0;
};

} // namespace orvalen::test
