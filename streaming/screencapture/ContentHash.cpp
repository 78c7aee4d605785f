#include "streaming/screencapture/ContentHash.h"

#include <array>
#include <cstring>

namespace orvalen {

namespace {

__extension__ using Wide = unsigned __int128;

// Odd, and about half of their bits set; without meaning beyond that.
constexpr std::array<std::uint64_t, 4> salts{0x9e3779b97f4a7c15, 0xd1b54a32d192ed03, 0x8cb92ba72f3d8dd7,
                                             0xabc98388fb8fac03};
// Others than the salts: a factor's place in its product must count.
constexpr std::array<std::uint64_t, 4> beginnings{0xc2b2ae3d27d4eb4f, 0x165667b19e3779f9, 0xe7037ed1a0b428db,
                                                  0x589965cc75374cc3};
constexpr std::size_t blockSize = 2 * sizeof(std::uint64_t) * salts.size();

/// Both halves of the product: every bit of either factor reaches most bits of it.
std::uint64_t folded(std::uint64_t a, std::uint64_t b)
{
    const auto product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

/// Several chains side by side: each multiplication waits for the one before it in its chain alone.
void mixIn(std::array<std::uint64_t, 4> &chains, const unsigned char *block)
{
    std::array<std::uint64_t, 2 * salts.size()> words{};
    std::memcpy(words.data(), block, blockSize);
    for (std::size_t i = 0; i < chains.size(); ++i)
        chains[i] = folded(words[2 * i] ^ salts[i], words[2 * i + 1] ^ chains[i]);
}

} // namespace

std::uint64_t contentHash(const void *data, std::size_t size)
{
    auto chains = beginnings;
    const auto *bytes = static_cast<const unsigned char *>(data);
    std::size_t left = size;
    for (; left >= blockSize; left -= blockSize, bytes += blockSize)
        mixIn(chains, bytes);
    if (left > 0) {
        std::array<unsigned char, blockSize> last{};
        std::memcpy(last.data(), bytes, left);
        mixIn(chains, last.data());
    }
    std::uint64_t hash = size;
    for (std::size_t i = 0; i < chains.size(); ++i)
        hash = folded(hash ^ salts[i], chains[i] ^ salts[(i + 1) % salts.size()]);
    return hash;
}

} // namespace orvalen
