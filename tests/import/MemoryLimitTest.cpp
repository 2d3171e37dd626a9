// What an import may take by itself, by the files in which Linux tells of memory and control groups.
#include "import/MemoryLimit.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/resource.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

namespace {

namespace fs = std::filesystem;

std::optional<std::uint64_t> LimitWith(const std::map<std::string, std::string>& files) {
    std::string root = testing::TempDir() + "epsrootXXXXXX";
    EXPECT_NE(::mkdtemp(root.data()), nullptr);
    for (const auto& [path, text] : files) {
        fs::create_directories(fs::path(root + path).parent_path());
        std::ofstream(root + path) << text;
    }
    const std::optional<std::uint64_t> limit = UsualMemoryLimit(root);
    fs::remove_all(root);
    return limit;
}

TEST(MemoryLimitTest, TheUsualLimitIsThreeQuartersOfWhatThereIs) {
    const std::pair<std::string, std::string> machine{"/proc/meminfo", "MemTotal:      4000 kB\nMemFree: 5 kB\n"};
    const std::uint64_t whole = 3000 * 1024;
    EXPECT_EQ(LimitWith({}), std::nullopt);
    EXPECT_EQ(LimitWith({machine}), whole);
    EXPECT_EQ(LimitWith({machine, {"/proc/self/cgroup", "0::/\n"}, {"/sys/fs/cgroup/memory.max", "max\n"}}), whole);
    // Version 2: the least of the group and those around it counts.
    EXPECT_EQ(LimitWith({machine,
                         {"/proc/self/cgroup", "0::/a/b\n"},
                         {"/sys/fs/cgroup/a/b/memory.max", "2000000\n"},
                         {"/sys/fs/cgroup/a/memory.max", "400000\n"}}),
              300000u);
    // Version 1, beside controllers that say nothing of memory.
    EXPECT_EQ(LimitWith({machine,
                         {"/proc/self/cgroup", "9:name=systemd:/\n4:cpu,memory:/x\n0::/\n"},
                         {"/sys/fs/cgroup/memory/x/memory.limit_in_bytes", "800000\n"},
                         {"/sys/fs/cgroup/memory/memory.limit_in_bytes", "9223372036854771712\n"}}),
              600000u);
    EXPECT_EQ(LimitWith({machine, {"/proc/self/cgroup", "broken\n::\n0::no\n"}}), whole);
}

TEST(MemoryLimitTest, ALimitThatIsLiftedLeavesWhatWasBefore) {
    rlimit before{}, meanwhile{}, after{};
    ASSERT_EQ(::getrlimit(RLIMIT_AS, &before), 0);
    {
        CMemoryLimit limit(std::uint64_t{1} << 30);
        ::getrlimit(RLIMIT_AS, &meanwhile);
        EXPECT_LT(meanwhile.rlim_cur, before.rlim_cur);
        limit.Lift();
        ::getrlimit(RLIMIT_AS, &after);
        EXPECT_EQ(after.rlim_cur, before.rlim_cur);
    }
    { const CMemoryLimit limit(std::uint64_t{1} << 30); }
    ::getrlimit(RLIMIT_AS, &after);
    EXPECT_EQ(after.rlim_cur, before.rlim_cur);
}

}  // namespace
