#include "streaming/screencapture/Pointer.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace orvalen {
namespace {

constexpr PixelLayout layout{2, 1, 0};

/// A piece of a screen of one grey.
class Screen
{
public:
    explicit Screen(const Rectangle &area, std::uint8_t grey = 100)
        : memory(static_cast<std::size_t>(area.width * area.height) * PixelLayout::bytes, grey), area(area)
    {
    }

    [[nodiscard]] PixelRows rows() { return {memory.data(), area}; }

    /// By its place on the desktop.
    [[nodiscard]] std::array<int, 3> at(int x, int y)
    {
        const auto *const pixel = rows().row(y - area.y) + static_cast<std::size_t>(x - area.x) * PixelLayout::bytes;
        return {pixel[layout.red], pixel[layout.green], pixel[layout.blue]};
    }

    bool operator==(const Screen &) const = default;

    std::vector<std::uint8_t> memory;
    Rectangle area;
};

using Colour = std::array<int, 3>;

Colour blended(std::uint32_t colour, std::uint8_t below)
{
    Screen screen({0, 0, 1, 1}, below);
    draw({{0, 0, 1, 1}, {colour}}, screen.rows(), layout);
    return screen.at(0, 0);
}

TEST(Pointer, hidesAsMuchOfTheScreenAsItsAlphaSays)
{
    EXPECT_EQ(blended(0x00000000, 100), (Colour{100, 100, 100})); // nothing
    EXPECT_EQ(blended(0xff0a141e, 100), (Colour{10, 20, 30}));    // all
    EXPECT_EQ(blended(0x80000000, 200), (Colour{100, 100, 100})); // half, black
    EXPECT_EQ(blended(0x80800000, 200), (Colour{228, 100, 100})); // half, red
    EXPECT_EQ(blended(0x01010101, 255), (Colour{255, 255, 255}));
}

TEST(Pointer, lightBeyondWhiteIsWhite)
{
    EXPECT_EQ(blended(0x00ff8000, 200), (Colour{255, 255, 200}));
}

TEST(Pointer, coloursGoWhereTheLayoutSays)
{
    for (const PixelLayout other : {PixelLayout{0, 1, 2}, PixelLayout{1, 2, 3}, PixelLayout{3, 2, 1}}) {
        Screen screen({0, 0, 1, 1});
        draw({{0, 0, 1, 1}, {0xff0a141e}}, screen.rows(), other);
        EXPECT_EQ(screen.memory[other.red], 10);
        EXPECT_EQ(screen.memory[other.green], 20);
        EXPECT_EQ(screen.memory[other.blue], 30);
    }
}

TEST(Pointer, isDrawnAtItsPlaceAndNowhereElse)
{
    Screen screen({10, 20, 5, 5});
    draw({{12, 21, 2, 3}, std::vector<std::uint32_t>(6, 0xff000000)}, screen.rows(), layout);
    for (int y = 20; y < 25; ++y) {
        for (int x = 10; x < 15; ++x) {
            const bool isBlack = x >= 12 && x < 14 && y >= 21 && y < 24;
            EXPECT_EQ(screen.at(x, y), (isBlack ? Colour{0, 0, 0} : Colour{100, 100, 100})) << x << ' ' << y;
        }
    }
}

TEST(Pointer, isCutOffAtEveryEdge)
{
    const Pointer pointer{
        {0, 0, 3, 3},
        {0xff000001, 0xff000002, 0xff000003, 0xff000004, 0xff000005, 0xff000006, 0xff000007, 0xff000008, 0xff000009}};
    for (int dx = -4; dx <= 4; ++dx) {
        for (int dy = -4; dy <= 4; ++dy) {
            Screen screen({0, 0, 3, 3});
            auto moved = pointer;
            moved.area.x = dx;
            moved.area.y = dy;
            draw(moved, screen.rows(), layout);
            for (int y = 0; y < 3; ++y) {
                for (int x = 0; x < 3; ++x) {
                    const bool isOn = x >= dx && x < dx + 3 && y >= dy && y < dy + 3;
                    const auto wanted = isOn ? Colour{0, 0, 3 * (y - dy) + (x - dx) + 1} : Colour{100, 100, 100};
                    ASSERT_EQ(screen.at(x, y), wanted) << dx << ' ' << dy << ' ' << x << ' ' << y;
                }
            }
        }
    }
}

TEST(Pointer, acrossTwoStripsLooksAsOnOne)
{
    const Pointer pointer{{3, 60, 4, 9}, std::vector<std::uint32_t>(36, 0x80102030)};
    Screen whole({0, 0, 10, 128});
    draw(pointer, whole.rows(), layout);
    Screen upper({0, 0, 10, 64});
    Screen lower({0, 64, 10, 64});
    draw(pointer, upper.rows(), layout);
    draw(pointer, lower.rows(), layout);
    auto both = upper.memory;
    both.insert(both.end(), lower.memory.begin(), lower.memory.end());
    EXPECT_EQ(both, whole.memory);
    EXPECT_NE(upper, Screen({0, 0, 10, 64}));
    EXPECT_NE(lower, Screen({0, 64, 10, 64}));
}

TEST(Pointer, withoutPictureChangesNothing)
{
    Screen screen({0, 0, 2, 2});
    draw({}, screen.rows(), layout);
    EXPECT_EQ(screen, Screen({0, 0, 2, 2}));
}

} // namespace
} // namespace orvalen
