#include "streaming/screencapture/ContentHash.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace orvalen {
namespace {

std::uint64_t hashOf(const std::vector<std::uint8_t> &bytes)
{
    return contentHash(bytes.data(), bytes.size());
}

TEST(ContentHash, sameContentsHaveTheSame)
{
    const std::vector<std::uint8_t> once(1000, 7);
    std::vector<std::uint8_t> displaced(1001, 7);
    EXPECT_EQ(hashOf(once), contentHash(displaced.data() + 1, 1000)); // wherever they lie
}

TEST(ContentHash, everyBitCounts)
{
    for (const std::size_t size : {1U, 7U, 64U, 100U, 640U}) {
        std::vector<std::uint8_t> bytes(size, 0x55);
        std::set<std::uint64_t> seen{hashOf(bytes)};
        for (std::size_t bit = 0; bit < 8 * size; ++bit) {
            bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] ^ 1U << bit % 8);
            EXPECT_TRUE(seen.insert(hashOf(bytes)).second) << bit;
            bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] ^ 1U << bit % 8);
        }
    }
}

TEST(ContentHash, twoChangesDoNotUndoEachOther)
{
    // The highest bits of two words of one chain: where simple hashes lose a change.
    std::vector<std::uint8_t> bytes(4 * 64, 0);
    std::set<std::uint64_t> seen{hashOf(bytes)};
    for (std::size_t first = 7; first < bytes.size(); first += 8) {
        for (std::size_t second = first + 8; second < bytes.size(); second += 8) {
            bytes[first] = bytes[second] = 0x80;
            EXPECT_TRUE(seen.insert(hashOf(bytes)).second) << first << ' ' << second;
            bytes[first] = bytes[second] = 0;
        }
    }
}

TEST(ContentHash, orderAndLengthCount)
{
    std::vector<std::uint8_t> bytes(256, 0);
    std::set<std::uint64_t> seen;
    for (std::size_t size = 0; size <= bytes.size(); ++size)
        EXPECT_TRUE(seen.insert(contentHash(bytes.data(), size)).second) << size;
    for (std::size_t block = 0; block < 4; ++block) {
        auto moved = bytes;
        moved[block * 64] = 1;
        EXPECT_TRUE(seen.insert(hashOf(moved)).second) << block;
    }
}

} // namespace
} // namespace orvalen
