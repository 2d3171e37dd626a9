// The bounds of the thread's stack, as the thread library knows them.
#include "platform/Stack.h"

#include <pthread.h>

#include <algorithm>
#include <cstddef>

const char* StackFloor() noexcept {
    constexpr std::size_t LEAST_RESERVE = 256 * 1024;
    void* lowest = nullptr;
    std::size_t size = 0;
    pthread_attr_t attributes;
    if (::pthread_getattr_np(::pthread_self(), &attributes) == 0) {
        ::pthread_attr_getstack(&attributes, &lowest, &size);
        ::pthread_attr_destroy(&attributes);
    }
    // Unknown bounds: what any thread can be trusted to have left.
    if (!lowest) return static_cast<const char*>(__builtin_frame_address(0)) - LEAST_RESERVE;
    // A stack smaller than that keeps half of itself.
    const std::size_t reserve = std::min(std::max(size / 8, LEAST_RESERVE), size / 2);
    return static_cast<const char*>(lowest) + reserve;
}
