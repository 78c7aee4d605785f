#pragma once

#include <chrono>

namespace orvalen {

/// How long one service is waited for.
struct SleepPatience
{
    std::chrono::milliseconds answer{500};    ///< To a question, its own start included.
    std::chrono::milliseconds start{1500};    ///< The same, where others may have to be started behind it.
    std::chrono::milliseconds response{1000}; ///< To a request that it handed on to those, from its answer on.
};

} // namespace orvalen
