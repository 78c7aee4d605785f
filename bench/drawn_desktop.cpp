// drawn_desktop   Draws on the root window of an X server something like a desktop at work: a photograph behind windows
// of text. For each line on standard input it draws and answers "drawn":
//   "N"     variant N of it, in which the photograph has moved and the texts have been scrolled
//   "tick"  a clock's next second
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace {

constexpr int lineHeight = 13; // of the server's own font
constexpr int letterWidth = 6;

struct Window
{
    int x;
    int y;
    int width;
    int height;
    std::uint32_t paper;
    std::array<std::uint32_t, 4> inks;
};

std::uint32_t scattered(std::uint32_t value)
{
    value = (value ^ value >> 16) * 0x7feb352dU;
    value = (value ^ value >> 15) * 0x846ca68bU;
    return value ^ value >> 16;
}

/// Smooth hills of that wave length, from 0 to 1.
class Hills
{
public:
    explicit Hills(int wave, std::uint32_t seed) : wave(wave), seed(seed) {}

    [[nodiscard]] float at(int x, int y) const
    {
        const int column = x / wave;
        const int row = y / wave;
        const float u = smooth(static_cast<float>(x % wave) / static_cast<float>(wave));
        const float v = smooth(static_cast<float>(y % wave) / static_cast<float>(wave));
        const float above = peak(column, row) * (1 - u) + peak(column + 1, row) * u;
        const float below = peak(column, row + 1) * (1 - u) + peak(column + 1, row + 1) * u;
        return above * (1 - v) + below * v;
    }

private:
    static float smooth(float t) { return t * t * (3 - 2 * t); }
    [[nodiscard]] float peak(int column, int row) const
    {
        const auto place = static_cast<std::uint32_t>(column * 7919 + row * 104729);
        return static_cast<float>(scattered(place ^ seed) & 0xffff) / 65535.0F;
    }

    int wave;
    std::uint32_t seed;
};

class Desktop
{
public:
    Desktop()
    {
        if (xcb_connection_has_error(xcb) != 0) {
            std::fputs("drawn_desktop: no X server\n", stderr);
            std::exit(1);
        }
        screen = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data;
        width = screen->width_in_pixels;
        height = screen->height_in_pixels;
        const auto font = xcb_generate_id(xcb);
        xcb_open_font(xcb, font, 5, "fixed");
        xcb_create_gc(xcb, pen, screen->root, XCB_GC_FONT, &font);
    }

    void draw(int variant)
    {
        drawPhotograph(variant);
        const int w = width;
        const int h = height;
        for (const auto &window :
             {Window{w / 20, h / 12, w * 2 / 5, h * 3 / 4, 0xffffff, {0x202020, 0x202020, 0x0050c8, 0x8f3f00}},
              Window{w / 2, h / 8, w * 9 / 20, h * 2 / 5, 0x1d1f23, {0xd0d0d0, 0x4be07e, 0xff9a94, 0x7dbdff}},
              Window{w * 11 / 20, h * 3 / 5, w / 3, h / 4, 0xf4f5f7, {0x1c1c1e, 0x565a62, 0x1c1c1e, 0xa8222b}}})
            drawWindow(window, variant);
        drawClock();
        sync();
    }

    void tick()
    {
        ++seconds;
        drawClock();
        sync();
    }

private:
    void drawPhotograph(int variant)
    {
        const std::array hills{Hills(480, 1), Hills(120, 2), Hills(30, 3), Hills(7, 4)};
        constexpr int rowsAtOnce = 16;
        std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width * rowsAtOnce));
        for (int top = 0; top < height; top += rowsAtOnce) {
            const int rows = std::min(rowsAtOnce, height - top);
            for (int i = 0; i < width * rows; ++i) {
                const int x = i % width + 37 * variant;
                const int y = top + i / width + 11 * variant;
                const float broad = hills[0].at(x, y);
                const float middle = hills[1].at(x, y);
                const float fine = hills[2].at(x, y) * 0.3F + hills[3].at(x, y) * 0.1F;
                const auto grain = static_cast<float>(scattered(static_cast<std::uint32_t>(y * 65536 + x)) & 7);
                const auto level = [&](float share) {
                    const float light = (broad * share + middle * (1 - share)) * 170 + fine * 100 + grain;
                    return static_cast<std::uint32_t>(std::clamp(light, 0.0F, 255.0F));
                };
                pixels[static_cast<std::size_t>(i)] = level(0.3F) << 16 | level(0.55F) << 8 | level(0.8F);
            }
            xcb_put_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, pen, static_cast<std::uint16_t>(width),
                          static_cast<std::uint16_t>(rows), 0, static_cast<std::int16_t>(top), 0, screen->root_depth,
                          static_cast<std::uint32_t>(width * rows * 4),
                          reinterpret_cast<const std::uint8_t *>(pixels.data()));
        }
    }

    void drawWindow(const Window &window, int variant)
    {
        fill(window.x, window.y, window.width, window.height, window.paper);
        fill(window.x, window.y, window.width, 2 * lineHeight, 0x9aa0a8);
        const int letters = std::min(250, window.width / letterWidth - 4);
        for (int line = 0; line < window.height / lineHeight - 3; ++line) {
            const int number = line + 3 * variant;
            std::string text;
            for (auto state = static_cast<std::uint32_t>(number + window.x); text.size() < 250;) {
                state = scattered(state + 1);
                for (std::uint32_t i = 0; i < 2 + state % 8; ++i)
                    text += static_cast<char>('a' + scattered(state + i) % 26);
                text += ' ';
            }
            const int shown = number % 7 == 6 ? letters / 4 : letters - static_cast<int>(scattered(number) % 20);
            write(window.x + 2 * letterWidth, window.y + (line + 4) * lineHeight,
                  text.substr(0, static_cast<std::size_t>(std::max(1, shown))),
                  window.inks[static_cast<std::size_t>(number) % window.inks.size()], window.paper);
        }
    }

    void drawClock()
    {
        std::array<char, 9> text{};
        std::snprintf(text.data(), text.size(), "12:%02u:%02u", seconds / 60 % 60, seconds % 60);
        write(width - 10 * letterWidth, lineHeight, text.data(), 0xffffff, 0x25282d);
    }

    void fill(int x, int y, int w, int h, std::uint32_t colour)
    {
        xcb_change_gc(xcb, pen, XCB_GC_FOREGROUND, &colour);
        const xcb_rectangle_t area{static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                                   static_cast<std::uint16_t>(w), static_cast<std::uint16_t>(h)};
        xcb_poly_fill_rectangle(xcb, screen->root, pen, 1, &area);
    }

    void write(int x, int y, const std::string &text, std::uint32_t ink, std::uint32_t paper)
    {
        const std::array colours{ink, paper};
        xcb_change_gc(xcb, pen, XCB_GC_FOREGROUND | XCB_GC_BACKGROUND, colours.data());
        xcb_image_text_8(xcb, static_cast<std::uint8_t>(text.size()), screen->root, pen, static_cast<std::int16_t>(x),
                         static_cast<std::int16_t>(y), text.c_str());
    }

    void sync() { std::free(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr)); }

    xcb_connection_t *const xcb = xcb_connect(nullptr, nullptr);
    const xcb_gcontext_t pen = xcb_generate_id(xcb);
    xcb_screen_t *screen = nullptr;
    int width = 0;
    int height = 0;
    unsigned seconds = 0;
};

} // namespace

int main()
{
    Desktop desktop;
    for (std::string line; std::getline(std::cin, line);) {
        if (line == "tick")
            desktop.tick();
        else
            desktop.draw(std::atoi(line.c_str()));
        std::cout << "drawn" << std::endl;
    }
}
