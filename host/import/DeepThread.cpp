// The thread is made by POSIX, as the standard library's have no size of stack.
#include "import/DeepThread.h"

#include <pthread.h>

#include <exception>

namespace {

// Room for some hundred thousand calls of a procedure in a procedure. Only what is used takes memory.
constexpr std::size_t kStackBytes = std::size_t{256} << 20;

struct Task {
    const std::function<void()>& work;
    std::exception_ptr failure;
};

void* RunTask(void* argument) {
    auto* task = static_cast<Task*>(argument);
    try {
        task->work();
    } catch (...) {
        task->failure = std::current_exception();
    }
    return nullptr;
}

}  // namespace

void RunOnDeepStack(const std::function<void()>& work) {
    Task task{work, nullptr};
    pthread_attr_t attributes;
    pthread_t thread{};
    bool started = false;
    if (::pthread_attr_init(&attributes) == 0) {
        started = ::pthread_attr_setstacksize(&attributes, kStackBytes) == 0 &&
                  ::pthread_create(&thread, &attributes, RunTask, &task) == 0;
        ::pthread_attr_destroy(&attributes);
    }
    if (!started) return work();
    ::pthread_join(thread, nullptr);
    if (task.failure) std::rethrow_exception(task.failure);
}
