#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>

#include <pthread.h>

namespace orvalen::test {

/// Runs `work` on a thread with a quarter of a megabyte of stack (half of what threads have on macOS): recursion over
/// thousands of levels does not survive it.
inline void onSmallStack(std::function<void()> work)
{
    constexpr std::size_t size = 256 * 1024;
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, size);
    const auto run = [](void *given) -> void * {
        (*static_cast<std::function<void()> *>(given))();
        return nullptr;
    };
    const int error = pthread_create(&thread, &attributes, run, &work);
    pthread_attr_destroy(&attributes);
    if (error != 0)
        throw std::runtime_error("no thread with a small stack");
    pthread_join(thread, nullptr);
}

} // namespace orvalen::test
