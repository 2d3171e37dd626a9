// Address space limits by setrlimit. Only the soft limit moves, so that it can be lifted again.
#include "import/MemoryLimit.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace {

// Bytes of address space that the process has now.
std::uint64_t AddressSpace() {
    unsigned long pages = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%lu", &pages) != 1) pages = 0;
        std::fclose(file);
    }
    return pages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

// The stack grows page by page, and counts as address space: at the limit a deeper call would be killed,
// where an allocation fails in order. So the stack takes its room beforehand, as far as it may grow.
[[gnu::noinline]] void TakeStack() {
    rlimit stack{};
    constexpr rlim_t kMost = 8 << 20;
    constexpr rlim_t kSpare = 512 << 10;  // of what is in use already, and of the kernel's guard
    if (::getrlimit(RLIMIT_STACK, &stack) != 0 || stack.rlim_cur <= kSpare) return;
    const std::size_t room = std::min(stack.rlim_cur, kMost) - kSpare;
    auto* pages = static_cast<volatile char*>(__builtin_alloca(room));
    for (std::size_t at = room; at >= 4096; at -= 4096) pages[at - 1] = 0;
}

}  // namespace

CMemoryLimit::CMemoryLimit(std::optional<std::uint64_t> bytes) {
    rlimit limit{};
    if (!bytes || ::getrlimit(RLIMIT_AS, &limit) != 0) return;
    TakeStack();
    const std::uint64_t used = AddressSpace();
    const rlim_t wanted = *bytes < RLIM_INFINITY - used ? *bytes + used : RLIM_INFINITY;
    const rlim_t before = limit.rlim_cur;
    limit.rlim_cur = std::min(wanted, before);
    if (::setrlimit(RLIMIT_AS, &limit) == 0) m_nBefore = before;
}

void CMemoryLimit::Lift() {
    rlimit limit{};
    if (!m_nBefore || ::getrlimit(RLIMIT_AS, &limit) != 0) return;
    limit.rlim_cur = *m_nBefore;
    ::setrlimit(RLIMIT_AS, &limit);
    m_nBefore.reset();
}
