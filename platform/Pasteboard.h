#pragma once

#include <string_view>

namespace orvalen {

/// The clipboard that people paste from. Main thread.
class Pasteboard
{
public:
    virtual ~Pasteboard() = default;

    /// Clears it and puts `text` (UTF-8) there as plain text.
    virtual void setText(std::string_view text) = 0;
};

} // namespace orvalen
