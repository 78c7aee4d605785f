#pragma once

#include <atomic>
#include <cstddef>
#include <string_view>
#include <utility>

namespace orvalen {

/// The bytes of one JPEG. Copies share them; nobody changes them. They lie in pages of their own, which with the last
/// copy become the next frame's or go back to the system. Any thread.
class Frame
{
public:
    /// An empty frame: there is no picture.
    Frame() = default;
    Frame(const Frame &other) noexcept;
    Frame(Frame &&other) noexcept : block(std::exchange(other.block, nullptr)) {}
    Frame &operator=(Frame other) noexcept
    {
        std::swap(block, other.block);
        return *this;
    }
    ~Frame();

    /// A copy of `bytes`; empty if there is no memory.
    [[nodiscard]] static Frame of(std::string_view bytes) noexcept;

    /// All that the open file `descriptor` holds; empty if that is nothing, more than `limit`, or not to be read.
    [[nodiscard]] static Frame ofFile(int descriptor, std::size_t limit) noexcept;

    [[nodiscard]] bool isEmpty() const { return block == nullptr; }
    [[nodiscard]] std::string_view bytes() const;
    /// The memory that it takes, which is more than its bytes.
    [[nodiscard]] std::size_t memory() const;

    /// Its display has a newer one: whoever still holds this one, or a copy, keeps memory that nobody else needs.
    void supersede() noexcept;
    [[nodiscard]] bool isSuperseded() const;
    /// The memory of all frames that are superseded and still held.
    [[nodiscard]] static std::size_t supersededMemory();

private:
    struct Block;

    explicit Frame(Block *block) : block(block) {}
    static Block *allocate(std::size_t capacity) noexcept;

    static std::atomic<Block *> spare;
    static std::atomic<std::size_t> superseded;
    Block *block = nullptr;
};

} // namespace orvalen
