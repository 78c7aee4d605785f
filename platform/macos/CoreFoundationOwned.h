#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <string_view>
#include <utility>

namespace orvalen::corefoundation {

/// A reference that is ours to release: what a function with Create or Copy in its name has returned. May be empty, as
/// those functions may return null.
template <typename Reference>
class [[nodiscard]] Owned
{
public:
    Owned() = default;
    explicit Owned(Reference reference) : reference(reference) {}
    Owned(Owned &&other) noexcept : reference(std::exchange(other.reference, nullptr)) {}
    Owned &operator=(Owned &&other) noexcept
    {
        std::swap(reference, other.reference);
        return *this;
    }
    Owned(const Owned &) = delete;
    Owned &operator=(const Owned &) = delete;
    ~Owned()
    {
        if (reference)
            CFRelease(reference);
    }

    [[nodiscard]] Reference get() const { return reference; }
    explicit operator bool() const { return reference != nullptr; }

private:
    Reference reference = nullptr;
};

/// Empty where `text` is no UTF-8.
[[nodiscard]] Owned<CFStringRef> makeString(std::string_view text);

/// UTF-8; empty where the object is no string, or null.
[[nodiscard]] std::string text(CFTypeRef object);

/// Whether the object is there and of that type.
[[nodiscard]] bool isOf(CFTypeID type, CFTypeRef object);

} // namespace orvalen::corefoundation
