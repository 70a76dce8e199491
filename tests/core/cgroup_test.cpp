#include "core/cgroup.h"
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

// A made-up root directory with the files that tell a process its control groups.
class Cgroup : public testing::Test {
protected:
    Cgroup()
    {
        std::string name = fs::temp_directory_path() / "keslcorex.XXXXXX";
        if (!mkdtemp(name.data())) throw std::runtime_error(name);
        root = name;
    }
    ~Cgroup() override { fs::remove_all(root); }

    void file(const std::string& name, const std::string& text)
    {
        fs::create_directories((root / name).parent_path());
        std::ofstream(root / name) << text;
    }
    void process(const std::string& groups, const std::string& mounts)
    {
        file("proc/self/cgroup", groups);
        file("proc/self/mountinfo", "22 27 0:21 / /proc rw,relatime - proc proc rw\n" + mounts);
    }
    void version1(const std::string& directory, const std::string& quota, const std::string& period)
    {
        file(directory + "/cpu.cfs_quota_us", quota + "\n");
        file(directory + "/cpu.cfs_period_us", period + "\n");
    }
    int processors() const { return kesl::cgroupProcessors(root.c_str()); }

    int room() const { return kesl::cgroupRoom(root.c_str()); }

    fs::path root;
};

const std::string mount2 = "30 23 0:26 / /sys/fs/cgroup rw,nosuid shared:9 master:1 - cgroup2 cgroup2 rw,nsdelegate\n";
const std::string mount1 = "32 31 0:29 / /sys/fs/cgroup/cpu,cpuacct rw,relatime - cgroup cgroup rw,cpu,cpuacct\n";

TEST_F(Cgroup, NoFilesAtAll) { EXPECT_EQ(processors(), INT_MAX); }

TEST_F(Cgroup, MountsWithoutQuotaFiles)
{
    process("3:cpu,cpuacct:/\n0::/\n", mount1 + mount2);
    EXPECT_EQ(processors(), INT_MAX);
}

TEST_F(Cgroup, Version2)
{
    process("0::/\n", mount2);
    // clang-format off
    const std::pair<const char*, int> cases[] = {
        {"150000 100000\n", 2}, {"200000 100000\n", 2}, {"200001 100000\n", 3}, {"1000 100000\n", 1}, {"9000 900", 10},
        {"max 100000\n", INT_MAX}, {"-1 100000\n", INT_MAX}, {"0 100000\n", INT_MAX}, {"150000 0\n", INT_MAX},
        {"9000000000000000000 1\n", INT_MAX}, {"150000\n", INT_MAX}, {"nonsense\n", INT_MAX}, {"", INT_MAX},
    };
    // clang-format on
    for (const auto& [text, expected] : cases) {
        file("sys/fs/cgroup/cpu.max", text);
        EXPECT_EQ(processors(), expected) << text;
    }
}

TEST_F(Cgroup, Version2TakesTheLeastOfAllLevels)
{
    process("0::/user.slice/job.scope\n", mount2);
    file("sys/fs/cgroup/user.slice/job.scope/cpu.max", "700000 100000\n");
    EXPECT_EQ(processors(), 7);
    file("sys/fs/cgroup/user.slice/cpu.max", "300000 100000\n");
    EXPECT_EQ(processors(), 3);
    file("sys/fs/cgroup/cpu.max", "500000 100000\n");
    EXPECT_EQ(processors(), 3);
    file("sys/fs/cgroup/cpu.max", "200000 100000\n");
    EXPECT_EQ(processors(), 2);
    file("sys/fs/cgroup/user.slice/other.scope/cpu.max", "100000 100000\n");
    file("sys/fs/cpu.max", "100000 100000\n"); // above the mount point
    EXPECT_EQ(processors(), 2);
}

TEST_F(Cgroup, Version1)
{
    process("3:cpuset:/elsewhere\n2:cpu,cpuacct:/job\n1:name=systemd:/\n", mount1);
    version1("sys/fs/cgroup/cpu,cpuacct/job", "250000", "100000");
    EXPECT_EQ(processors(), 3);
    version1("sys/fs/cgroup/cpu,cpuacct/job", "-1", "100000");
    EXPECT_EQ(processors(), INT_MAX);
    version1("sys/fs/cgroup/cpu,cpuacct", "40000", "20000");
    EXPECT_EQ(processors(), 2);
}

TEST_F(Cgroup, Version1NeedsTheCpuController)
{
    process("2:cpuset:/\n3:cpuacct:/\n4:cpu:/\n", "32 31 0:29 / /sys/fs/cgroup/cpuset rw - cgroup cgroup rw,cpuset\n"
                                                  "33 31 0:30 / /sys/fs/cgroup/cpuacct rw - cgroup cgroup rw,cpuacct\n");
    version1("sys/fs/cgroup/cpuset", "100000", "100000");
    version1("sys/fs/cgroup/cpuacct", "100000", "100000");
    EXPECT_EQ(processors(), INT_MAX);
}

TEST_F(Cgroup, BothVersionsAtOnce)
{
    process("2:cpu,cpuacct:/a\n0::/b\n", mount1 + mount2);
    version1("sys/fs/cgroup/cpu,cpuacct/a", "400000", "100000");
    EXPECT_EQ(processors(), 4);
    file("sys/fs/cgroup/b/cpu.max", "300000 100000\n");
    EXPECT_EQ(processors(), 3);
}

TEST_F(Cgroup, RoomForThreads)
{
    process("4:pids:/job\n0::/b\n", "34 31 0:31 / /sys/fs/cgroup/pids rw - cgroup cgroup rw,pids\n" + mount2);
    EXPECT_EQ(room(), INT_MAX);
    file("sys/fs/cgroup/pids/job/pids.max", "max\n");
    file("sys/fs/cgroup/pids/job/pids.current", "7\n");
    EXPECT_EQ(room(), INT_MAX);
    file("sys/fs/cgroup/pids/job/pids.max", "20\n");
    EXPECT_EQ(room(), 13);
    file("sys/fs/cgroup/b/pids.max", "9\n");
    file("sys/fs/cgroup/b/pids.current", "9\n");
    EXPECT_EQ(room(), 0);
    file("sys/fs/cgroup/b/pids.current", "12\n"); // a limit may be set below what runs
    EXPECT_EQ(room(), 0);
    EXPECT_EQ(processors(), INT_MAX);
}

// A container sees its own group as the root of the mount, while /proc/self/cgroup gives the path of the host.
TEST_F(Cgroup, ContainerWithThePathOfTheHost)
{
    const std::string mount = "32 31 0:29 /docker/abc /sys/fs/cgroup/cpu ro - cgroup cgroup rw,cpu\n";
    process("2:cpu:/docker/abc\n", mount);
    version1("sys/fs/cgroup/cpu", "200000", "100000");
    EXPECT_EQ(processors(), 2);
    process("2:cpu:/docker/abc/inner\n", mount);
    version1("sys/fs/cgroup/cpu/inner", "100000", "100000");
    EXPECT_EQ(processors(), 1);
    process("2:cpu:/docker/abcd\n", mount); // a mount of another group
    version1("sys/fs/cgroup/cpud", "100000", "100000");
    EXPECT_EQ(processors(), INT_MAX);
}

TEST_F(Cgroup, BrokenFiles)
{
    process("\n:\n0:\ncpu\n0::", "\n - \n1 2 3\n1 2 3 4 5 - cgroup\n1 2 3 / / - cgroup2\n" + std::string(10000, 'x') + "\n");
    EXPECT_EQ(processors(), INT_MAX);
    process("0::/" + std::string(5000, 'y') + "\n", mount2);
    file("sys/fs/cgroup/cpu.max", "100000 100000\n");
    EXPECT_EQ(processors(), INT_MAX);
}

} // namespace
