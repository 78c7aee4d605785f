#pragma once

#include <stdexcept>

namespace orvalen {

/// No picture was taken. what() is a sentence for the person who asked for it.
class CaptureError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace orvalen
