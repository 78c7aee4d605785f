// key_press press LETTER      Holds Super and Alt, presses the letter (w or m); prints when, in seconds of the clock
//                             CLOCK_MONOTONIC. Lets go of everything.
// key_press heat PID          The same with w, then watches the threads of that process. Prints the milliseconds from
//                             the press to the first thread of a pulse, and to the first that has used a millisecond of
//                             processor time.
// key_press floor             Presses a key that it has grabbed itself; prints the milliseconds until it is told so:
//                             sooner no program can know.

#include <X11/keysym.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/support/Typist.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto limit = 20s;
constexpr auto pulseThread = "orvalen.pulse";
constexpr long long heatedNanoseconds = 1'000'000;

double milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

/// Super, Alt and a key; the moment at which the key went down.
Clock::time_point strike(const orvalen::test::Typist &typist, xcb_keysym_t key)
{
    typist.press(XK_Super_L);
    typist.press(XK_Alt_L);
    const auto moment = Clock::now();
    typist.press(key);
    return moment;
}

void letGo(const orvalen::test::Typist &typist, xcb_keysym_t key)
{
    for (const auto each : {key, xcb_keysym_t{XK_Alt_L}, xcb_keysym_t{XK_Super_L}})
        typist.release(each);
}

std::string line(const std::filesystem::path &file)
{
    std::ifstream stream(file);
    std::string text;
    std::getline(stream, text);
    return text;
}

struct Heat
{
    std::optional<double> begun, heated; ///< Milliseconds.
};

/// Looks five times a millisecond: more often would take from the processors what is to be measured.
Heat watch(const std::filesystem::path &threads, Clock::time_point pressed)
{
    Heat heat;
    while (!heat.heated && Clock::now() - pressed < limit) {
        for (const auto &thread : std::filesystem::directory_iterator(threads)) {
            if (line(thread.path() / "comm") != pulseThread)
                continue;
            const auto used = std::atoll(line(thread.path() / "schedstat").c_str());
            const auto now = milliseconds(Clock::now() - pressed);
            if (!heat.begun)
                heat.begun = now;
            if (used >= heatedNanoseconds && !heat.heated)
                heat.heated = now;
        }
        std::this_thread::sleep_for(200us);
    }
    return heat;
}

double timeToBeTold(const std::string &display)
{
    constexpr xcb_keysym_t key = XK_F12;
    const orvalen::test::Typist typist(display);
    auto *const xcb = xcb_connect(display.c_str(), nullptr);
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    std::free(xcb_request_check(xcb, xcb_grab_key_checked(xcb, 0, root, XCB_MOD_MASK_ANY, typist.keyOf(key),
                                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    std::optional<Clock::time_point> told;
    std::thread listener([&] {
        while (xcb_generic_event_t *const event = xcb_wait_for_event(xcb)) {
            const bool isIt = event->response_type == XCB_KEY_PRESS;
            std::free(event);
            if (isIt)
                break;
        }
        told = Clock::now();
    });
    std::this_thread::sleep_for(5ms); // it waits by then, as a program does
    const auto pressed = strike(typist, key);
    listener.join();
    letGo(typist, key);
    xcb_disconnect(xcb);
    return milliseconds(*told - pressed);
}

int run(const std::string &what, const std::string &argument)
{
    const char *const variable = std::getenv("DISPLAY");
    const std::string display = variable ? variable : "";
    if (what == "floor") {
        std::printf("%.3f\n", timeToBeTold(display));
        return 0;
    }
    const orvalen::test::Typist typist(display);
    const xcb_keysym_t key = what == "press" && argument == "m" ? XK_m : XK_w;
    const auto pressed = strike(typist, key);
    if (what == "press") {
        letGo(typist, key);
        std::printf("%.6f\n", std::chrono::duration<double>(pressed.time_since_epoch()).count());
        return 0;
    }
    const auto heat = watch("/proc/" + argument + "/task", pressed);
    letGo(typist, key);
    if (!heat.heated)
        throw std::runtime_error("nothing was heated");
    std::printf("%.3f %.3f\n", *heat.begun, *heat.heated);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const std::string what = argc > 1 ? argv[1] : "";
    if (argc != (what == "floor" ? 2 : 3) || (what != "floor" && what != "press" && what != "heat")) {
        std::fputs("key_press press LETTER | heat PID | floor\n", stderr);
        return 64;
    }
    try {
        return run(what, argc > 2 ? argv[2] : "");
    } catch (const std::exception &error) {
        std::fprintf(stderr, "key_press: %s\n", error.what());
        return 70;
    }
}
