// The floor lies inside the stack of the thread that asks, with a reserve below it.
#include "platform/Stack.h"

#include <gtest/gtest.h>
#include <pthread.h>

namespace {

struct Bounds {
    const char* frame = nullptr;
    const char* floor = nullptr;
    char* lowest = nullptr;
    size_t size = 0;
};

void* Ask(void* arg) {
    Bounds& bounds = *static_cast<Bounds*>(arg);
    bounds.frame = static_cast<const char*>(__builtin_frame_address(0));
    bounds.floor = StackFloor();
    pthread_attr_t attributes;
    pthread_getattr_np(pthread_self(), &attributes);
    void* lowest = nullptr;
    pthread_attr_getstack(&attributes, &lowest, &bounds.size);
    bounds.lowest = static_cast<char*>(lowest);
    pthread_attr_destroy(&attributes);
    return nullptr;
}

TEST(StackTest, FloorLeavesRoomOnBothSides) {
    for (const size_t size : {size_t{0}, size_t{1} << 18, size_t{16} << 20}) {  // 0: this thread
        SCOPED_TRACE(size);
        Bounds bounds;
        if (size == 0) {
            Ask(&bounds);
        } else {
            pthread_attr_t attributes;
            pthread_attr_init(&attributes);
            ASSERT_EQ(pthread_attr_setstacksize(&attributes, size), 0);
            pthread_t thread;
            ASSERT_EQ(pthread_create(&thread, &attributes, Ask, &bounds), 0);
            pthread_join(thread, nullptr);
            pthread_attr_destroy(&attributes);
        }
        EXPECT_GE(bounds.floor - bounds.lowest, static_cast<std::ptrdiff_t>(bounds.size / 8));
        EXPECT_GT(bounds.frame - bounds.floor, static_cast<std::ptrdiff_t>(bounds.size / 4));
    }
}

}  // namespace
