// Address space limits by setrlimit. Only the soft limit moves, so that it can be lifted again. Control groups are
// those of version 2 and 1 (cgroups(7)).
#include "import/MemoryLimit.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <limits>

namespace {

constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();

// The number that a file begins with; kNoLimit for a file that isn't there, or that holds none, such as "max".
std::uint64_t NumberIn(const std::string& path) {
    std::ifstream file(path);
    std::uint64_t number = 0;
    return file >> number ? number : kNoLimit;
}

// The least limit of a control group and of those that it is in.
std::uint64_t LeastLimit(const std::string& mount, std::string group, const std::string& file) {
    std::uint64_t least = kNoLimit;
    for (;;) {
        least = std::min(least, NumberIn(mount + group + "/" + file));
        if (group.empty()) return least;
        group.resize(group.rfind('/'));
    }
}

std::uint64_t GroupLimit(const std::string& root) {
    std::uint64_t least = kNoLimit;
    std::ifstream groups(root + "/proc/self/cgroup");
    // Each line is "hierarchy:controllers:/path"; version 2 names no controllers.
    for (std::string line; std::getline(groups, line);) {
        const std::size_t first = line.find(':');
        const std::size_t second = first == std::string::npos ? first : line.find(':', first + 1);
        if (second == std::string::npos || line.compare(second + 1, 1, "/") != 0) continue;
        const std::string controllers = "," + line.substr(first + 1, second - first - 1) + ",";
        std::string group = line.substr(second + 1);
        if (group == "/") group.clear();
        if (controllers == ",,")
            least = std::min(least, LeastLimit(root + "/sys/fs/cgroup", group, "memory.max"));
        else if (controllers.find(",memory,") != std::string::npos)
            least = std::min(least, LeastLimit(root + "/sys/fs/cgroup/memory", group, "memory.limit_in_bytes"));
    }
    return least;
}

std::uint64_t MachineMemory(const std::string& root) {
    std::ifstream info(root + "/proc/meminfo");
    std::string word;
    std::uint64_t kilobytes = 0;
    while (info >> word)
        if (word == "MemTotal:" && info >> kilobytes) return kilobytes * 1024;
    return kNoLimit;
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

std::optional<std::uint64_t> UsualMemoryLimit(const std::string& root) {
    const std::uint64_t memory = std::min(GroupLimit(root), MachineMemory(root));
    return memory == kNoLimit ? std::nullopt : std::optional(memory / 4 * 3);
}

std::uint64_t UsedAddressSpace() {
    unsigned long pages = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%lu", &pages) != 1) pages = 0;
        std::fclose(file);
    }
    return pages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

CMemoryLimit::CMemoryLimit(std::optional<std::uint64_t> bytes, std::optional<std::uint64_t> used) {
    rlimit limit{};
    if (!bytes || ::getrlimit(RLIMIT_AS, &limit) != 0) return;
    TakeStack();
    if (!used) used = UsedAddressSpace();
    const rlim_t wanted = *bytes < RLIM_INFINITY - *used ? *bytes + *used : RLIM_INFINITY;
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
