#include "streaming/server/Frame.h"

#include <cerrno>
#include <cstring>
#include <new>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvalen {

/// Stands at the beginning of the pages; the bytes follow it.
struct alignas(64) Frame::Block
{
    std::atomic<std::size_t> owners = 1;
    std::atomic<bool> isSuperseded = false;
    std::size_t mapped = 0;
    std::size_t size = 0;

    char *bytes() { return reinterpret_cast<char *>(this + 1); }
};

// Not from the heap: frames of changing size, made by ever other threads, would leave it many times as large. The pages
// of the last frame that went are kept for the next: new ones would have to be cleared and mapped one by one.
std::atomic<Frame::Block *> Frame::spare = nullptr;
std::atomic<std::size_t> Frame::superseded = 0;

Frame::Block *Frame::allocate(std::size_t capacity) noexcept
{
    const std::size_t wanted = sizeof(Block) + capacity;
    if (Block *const kept = spare.exchange(nullptr)) {
        if (kept->mapped >= wanted && kept->mapped / 2 <= wanted) {
            kept->owners = 1;
            kept->isSuperseded = false;
            kept->size = 0;
            return kept;
        }
        ::munmap(kept, kept->mapped);
    }
    const std::size_t mapped = wanted + wanted / 8; // also for a next frame that is a little larger
    void *const pages = ::mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANON, -1, 0);
    if (pages == MAP_FAILED)
        return nullptr;
    auto *const block = new (pages) Block;
    block->mapped = mapped;
    return block;
}

Frame::Frame(const Frame &other) noexcept : block(other.block)
{
    if (block)
        block->owners.fetch_add(1, std::memory_order_relaxed);
}

Frame::~Frame()
{
    if (!block || block->owners.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    if (block->isSuperseded)
        superseded -= block->mapped;
    if (Block *const replaced = spare.exchange(block))
        ::munmap(replaced, replaced->mapped);
}

Frame Frame::of(std::string_view bytes) noexcept
{
    Frame frame(bytes.empty() ? nullptr : allocate(bytes.size()));
    if (frame.block) {
        std::memcpy(frame.block->bytes(), bytes.data(), bytes.size());
        frame.block->size = bytes.size();
    }
    return frame;
}

Frame Frame::ofFile(int descriptor, std::size_t limit) noexcept
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || status.st_size <= 0 || static_cast<std::size_t>(status.st_size) > limit)
        return {};
    const auto size = static_cast<std::size_t>(status.st_size);
    Frame frame(allocate(size));
    if (!frame.block)
        return {};
    auto &filled = frame.block->size;
    while (filled < size) {
        const ssize_t got = ::read(descriptor, frame.block->bytes() + filled, size - filled);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break; // it has become shorter: what there is
        filled += static_cast<std::size_t>(got);
    }
    return filled > 0 ? std::move(frame) : Frame();
}

std::string_view Frame::bytes() const
{
    return block ? std::string_view(block->bytes(), block->size) : std::string_view();
}

std::size_t Frame::memory() const
{
    return block ? block->mapped : 0;
}

void Frame::supersede() noexcept
{
    if (block && !block->isSuperseded.exchange(true))
        superseded += block->mapped;
}

bool Frame::isSuperseded() const
{
    return block && block->isSuperseded;
}

std::size_t Frame::supersededMemory()
{
    return superseded;
}

} // namespace orvalen
