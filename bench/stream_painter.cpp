// stream_painter     Covers the screen with what a desktop might show, something moving, and a clock (stream_clock.h).
//
// The clock is painted 200 times a second, the moving thing 25 times; until it is killed. X11.

#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <random>
#include <thread>
#include <vector>

#include "bench/stream_clock.h"

namespace {

using namespace std::chrono_literals;
namespace stream_clock = orvalen::bench::stream_clock;

constexpr int margin = 40; ///< Between the screen's top and what stands below the clock.
constexpr int moverSize = 240;
constexpr int paintsPerMove = 8;

class Painter
{
public:
    explicit Painter(xcb_connection_t *connection)
        : display(connection),
          screen(xcb_setup_roots_iterator(xcb_get_setup(connection)).data),
          width(screen->width_in_pixels),
          height(screen->height_in_pixels),
          window(xcb_generate_id(connection)),
          page(xcb_generate_id(connection)),
          mover(xcb_generate_id(connection)),
          clock(xcb_generate_id(connection)),
          context(xcb_generate_id(connection))
    {
        const std::uint32_t values[] = {screen->white_pixel, 1};
        xcb_create_window(display, screen->root_depth, window, screen->root, 0, 0, screen->width_in_pixels,
                          screen->height_in_pixels, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
        for (const auto &[pixmap, across, down] : {Size{page, width, height}, Size{mover, moverSize, moverSize},
                                                   Size{clock, stream_clock::width, stream_clock::squareSize}})
            xcb_create_pixmap(display, screen->root_depth, pixmap, window, static_cast<std::uint16_t>(across),
                              static_cast<std::uint16_t>(down));
        xcb_create_gc(display, context, window, 0, nullptr);
        drawPage();
        drawMover();
        xcb_map_window(display, window);
        copy(page, 0, 0, 0, 0, width, height);
    }

    void paintClock()
    {
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        const auto squares =
            stream_clock::squaresOf(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
        fill(clock, screen->black_pixel, {{0, 0, stream_clock::width, stream_clock::squareSize}});
        std::vector<xcb_rectangle_t> white;
        for (std::size_t i = 0; i < squares.size(); ++i)
            if (squares[i])
                white.push_back({static_cast<std::int16_t>(i * stream_clock::squareSize), 0, stream_clock::squareSize,
                                 stream_clock::squareSize});
        fill(clock, screen->white_pixel, white);
        copy(clock, 0, 0, 0, 0, stream_clock::width, stream_clock::squareSize); // at once: no capture sees half of it
    }

    void move()
    {
        copy(page, x, y, x, y, moverSize, moverSize);
        x = (x + 12) % std::max(1, width - moverSize);
        y = margin + (y - margin + 5) % std::max(1, height - moverSize - margin);
        copy(mover, 0, 0, x, y, moverSize, moverSize);
    }

    [[nodiscard]] bool flush() { return xcb_flush(display) > 0 && xcb_connection_has_error(display) == 0; }

private:
    struct Size
    {
        xcb_pixmap_t pixmap;
        int across;
        int down;
    };

    void fill(xcb_drawable_t where, std::uint32_t colour, const std::vector<xcb_rectangle_t> &rectangles)
    {
        xcb_change_gc(display, context, XCB_GC_FOREGROUND, &colour);
        // A request holds 65535 words, a rectangle is two of them.
        for (std::size_t begin = 0; begin < rectangles.size(); begin += 16'000)
            xcb_poly_fill_rectangle(
                display, where, context,
                static_cast<std::uint32_t>(std::min<std::size_t>(rectangles.size() - begin, 16'000)),
                rectangles.data() + begin);
    }

    void copy(xcb_pixmap_t from, int fromX, int fromY, int toX, int toY, int across, int down)
    {
        xcb_copy_area(display, from, window, context, static_cast<std::int16_t>(fromX),
                      static_cast<std::int16_t>(fromY), static_cast<std::int16_t>(toX), static_cast<std::int16_t>(toY),
                      static_cast<std::uint16_t>(across), static_cast<std::uint16_t>(down));
    }

    [[nodiscard]] static xcb_rectangle_t rectangle(int left, int top, int across, int down)
    {
        return {static_cast<std::int16_t>(left), static_cast<std::int16_t>(top), static_cast<std::uint16_t>(across),
                static_cast<std::uint16_t>(down)};
    }

    /// A coloured ground with two white windows full of what looks like small print.
    void drawPage()
    {
        std::minstd_rand random(7);
        const auto below = [&random](unsigned limit) { return static_cast<int>((random() >> 8) % limit); };
        for (int top = 0; top < height; top += 4)
            fill(page, 0x204060u + static_cast<std::uint32_t>(top * 100 / height) * 0x010101u,
                 {rectangle(0, top, width, 4)});
        for (const int left : {width / 20, width / 2 + width / 40}) {
            const int across = width * 17 / 40;
            fill(page, 0xf8f8f8, {rectangle(left, height / 12, across, height * 5 / 6)});
            std::vector<xcb_rectangle_t> strokes;
            for (int line = height / 12 + 20; line < height * 11 / 12 - 20; line += 18)
                for (int letter = left + 20; letter < left + across - 20; letter += 8)
                    for (int stroke = 0; stroke < 3 && below(6) != 0; ++stroke)
                        strokes.push_back(rectangle(letter + below(5), line + below(8), 1 + below(2), 1 + below(6)));
            fill(page, 0x202020, strokes);
        }
    }

    void drawMover()
    {
        std::minstd_rand random(11);
        for (int left = 0; left < moverSize; left += 8)
            for (int top = 0; top < moverSize; top += 8)
                fill(mover, static_cast<std::uint32_t>(random()) & 0xffffff, {rectangle(left, top, 8, 8)});
    }

    xcb_connection_t *display;
    xcb_screen_t *screen;
    int width;
    int height;
    xcb_window_t window;
    xcb_pixmap_t page;
    xcb_pixmap_t mover;
    xcb_pixmap_t clock;
    xcb_gcontext_t context;
    int x = 0;
    int y = margin;
};

} // namespace

int main()
{
    xcb_connection_t *display = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(display)) {
        std::fputs("stream_painter: no X display\n", stderr);
        return 69;
    }
    Painter painter(display);
    auto next = std::chrono::steady_clock::now();
    for (unsigned count = 0;; ++count) {
        if (count % paintsPerMove == 0)
            painter.move();
        painter.paintClock();
        if (!painter.flush())
            return 0; // the screen is gone
        next = std::max(next + 5ms, std::chrono::steady_clock::now());
        std::this_thread::sleep_until(next);
    }
}
