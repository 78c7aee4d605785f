#pragma once

#include <utility>

#include <unistd.h>

namespace orvalen {

/// An open descriptor that is closed when this goes. −1: none.
class [[nodiscard]] Descriptor
{
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number(number) {}
    Descriptor(Descriptor &&other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(number, other.number);
        return *this;
    }
    ~Descriptor()
    {
        if (number >= 0)
            ::close(number);
    }

    [[nodiscard]] int get() const { return number; }
    [[nodiscard]] int release() { return std::exchange(number, -1); }
    explicit operator bool() const { return number >= 0; }

private:
    int number = -1;
};

} // namespace orvalen
