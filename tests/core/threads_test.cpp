#include "core/cgroup.h"
#include "keslcorex.h"
#include "tests/company.h"
#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <omp.h>
#include <sched.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

int processorsOfThisThread()
{
    cpu_set_t set;
    EXPECT_EQ(sched_getaffinity(0, sizeof set, &set), 0);
    return CPU_COUNT(&set);
}

bool bindToOneProcessor()
{
    cpu_set_t all, one;
    if (sched_getaffinity(0, sizeof all, &all)) return false;
    int first = 0;
    while (!CPU_ISSET(first, &all)) ++first;
    CPU_ZERO(&one);
    CPU_SET(first, &one);
    return !sched_setaffinity(0, sizeof one, &one);
}

int processorsOfThisMachine() { return std::min(processorsOfThisThread(), kesl::cgroupProcessors("")); }

// The result of a child process: its exit status, or -1 for one that hangs or dies.
template <class Body> int inChild(Body body)
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (!child) {
        alarm(30); // ends a child that hangs
        _exit(body());
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// What a fresh process prints, with these settings in its environment and none of ours, whatever else the machine does.
std::string freshProcess(const std::string& environment)
{
    const std::string ours = "env -u OMP_NUM_THREADS -u OMP_PROC_BIND -u OMP_PLACES OMP_DYNAMIC=false ";
    FILE* out = popen((ours + environment + " " NUMBER_OF_THREADS).c_str(), "r");
    if (!out) return "no process";
    char text[64] = "";
    const char* line = std::fgets(text, sizeof text, out);
    return pclose(out) == 0 && line ? text : "failed";
}
std::string twice(int n) { return std::to_string(n) + " " + std::to_string(n) + "\n"; }

class Threads : public testing::Test {
protected:
    void TearDown() override { keslCoreSetNumThreads(0); }
};

TEST_F(Threads, AutomaticIsTheRuntimesNumberWithinTheProcessors)
{
    const int before = omp_get_max_threads(), bound = processorsOfThisMachine();
    for (int n : {1, 2, 3, 64}) {
        omp_set_num_threads(n);
        EXPECT_EQ(ownGetNumThreads(), std::min(n, bound)) << n;
    }
    omp_set_num_threads(before);
}

TEST_F(Threads, SetAndGet)
{
    const int automatic = keslCoreGetNumThreads();
    for (int n : {1, 2, 4, 37, int(keslCoreMaxThreads)}) {
        EXPECT_EQ(keslCoreSetNumThreads(n), keslStatusOk);
        EXPECT_EQ(keslCoreGetNumThreads(), n);
        EXPECT_EQ(ownGetNumThreads(), n);
    }
    EXPECT_EQ(keslCoreSetNumThreads(3), keslStatusOk);
    for (int bad : {-1, INT_MIN, keslCoreMaxThreads + 1, INT_MAX}) {
        EXPECT_EQ(keslCoreSetNumThreads(bad), keslStatusBadCount) << bad;
        EXPECT_EQ(keslCoreGetNumThreads(), 3) << bad;
    }
    EXPECT_EQ(keslCoreSetNumThreads(0), keslStatusOk);
    EXPECT_EQ(keslCoreGetNumThreads(), automatic);
}

TEST_F(Threads, StableWhileNothingChanges)
{
    const int n = ownGetNumThreads();
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(ownGetNumThreads(), n);
}

TEST_F(Threads, OneInsideAParallelRegion)
{
    for (int set : {0, 4}) {
        keslCoreSetNumThreads(set);
        const int outside = ownGetNumThreads();
        int team = 0, wrong = 0;
#pragma omp parallel num_threads(2) reduction(+ : team, wrong)
        {
            team += 1;
            wrong += ownGetNumThreads() != 1;
        }
        ASSERT_EQ(team, 2);
        EXPECT_EQ(wrong, 0);
        EXPECT_EQ(ownGetNumThreads(), outside);
    }
}

TEST_F(Threads, BoundByTheAffinityOfTheCallingThread)
{
    const int before = ownGetNumThreads();
    int bound = 0, asked = 0;
    std::thread([&] {
        ownGetNumThreads(); // first, since LLVM's runtime frees a thread of its binding when it meets it
        ASSERT_TRUE(bindToOneProcessor());
        omp_set_num_threads(4);
        bound = ownGetNumThreads();
        keslCoreSetNumThreads(4);
        asked = ownGetNumThreads();
        keslCoreSetNumThreads(0);
    }).join();
    EXPECT_EQ(bound, 1);
    EXPECT_EQ(asked, 4); // on one processor, since the program says so
    EXPECT_EQ(ownGetNumThreads(), before);
}

TEST_F(Threads, BoundByTheAffinityOfTheProcess)
{
    std::string printed;
    std::thread([&] {
        ASSERT_TRUE(bindToOneProcessor());
        printed = freshProcess("OMP_NUM_THREADS=4");
    }).join();
    EXPECT_EQ(printed, twice(1));
}

TEST_F(Threads, EnvironmentOfTheRuntime)
{
    const int bound = processorsOfThisMachine();
    EXPECT_EQ(freshProcess(""), twice(bound));
    for (int n : {1, 2, 64}) EXPECT_EQ(freshProcess("OMP_NUM_THREADS=" + std::to_string(n)), twice(std::min(n, bound)));
}

// The runtime ties the calling thread to one place then, which must not be taken for the whole of the processors.
TEST_F(Threads, BoundThreadsStillUseAllProcessors)
{
    const int bound = processorsOfThisMachine();
    for (const char* bind : {"true", "close", "spread"})
        EXPECT_EQ(freshProcess("OMP_PROC_BIND=" + std::string(bind)), twice(bound)) << bind;
    EXPECT_EQ(freshProcess("OMP_PROC_BIND=false"), twice(bound));
}

TEST_F(Threads, OneWhereOtherWorkTakesAllProcessors)
{
    const int processors = int(sysconf(_SC_NPROCESSORS_ONLN));
    const Company company(2 * processors);
    usleep(50000);
    EXPECT_EQ(freshProcess("OMP_DYNAMIC=true"), twice(1));
    EXPECT_EQ(freshProcess("OMP_NUM_THREADS=64 OMP_DYNAMIC=true"), twice(1));
    EXPECT_EQ(freshProcess(""), twice(processorsOfThisMachine())) << "OMP_DYNAMIC=false leaves the number alone";
    EXPECT_EQ(inChild([] { return keslCoreSetNumThreads(5) ? 0 : ownGetNumThreads(); }), 5) << "as asked";
}

int addsRight()
{
    constexpr int order = 3, elements = order * order, count = 100000;
    std::vector<float> a(count * elements), b(a.size()), sum(a.size());
    for (std::size_t i = 0; i < a.size(); ++i) a[i] = float(i % 1009), b[i] = float(i % 757) / 4;
    const int s2 = sizeof(float), s1 = order * s2, s0 = order * s1;
    const KeslStatus status =
        keslAdd_mama_32f(a.data(), s0, s1, s2, b.data(), s0, s1, s2, sum.data(), s0, s1, s2, order, order, count);
    for (std::size_t i = 0; i < sum.size(); ++i)
        if (sum[i] != a[i] + b[i]) return 2;
    return status == keslStatusOk ? 0 : 3;
}

long threadsOfThisProcess()
{
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
}

// As a daemon does, which forks before it has any thread: the child may have a team of its own.
TEST_F(Threads, ForkedChildOfAProcessWithoutThreads)
{
    ASSERT_EQ(threadsOfThisProcess(), 1);
    const int automatic = ownGetNumThreads();
    EXPECT_EQ(inChild([] { return ownGetNumThreads(); }), automatic);
    EXPECT_EQ(inChild([] { return inChild([] { return ownGetNumThreads(); }); }), automatic);
    const auto usesATeam = [] {
        if (keslCoreSetNumThreads(4) || ownGetNumThreads() != 4) return 4;
        if (const int wrong = addsRight()) return wrong;
        return threadsOfThisProcess() < 2 ? 5 : 0;
    };
    EXPECT_EQ(inChild(usesATeam), 0);
    EXPECT_EQ(inChild([=] { return inChild(usesATeam); }), 0);
}

TEST_F(Threads, ForkedChildOfAProcessThatUsedATeam)
{
    keslCoreSetNumThreads(2);
    ASSERT_EQ(addsRight(), 0);
    ASSERT_GE(threadsOfThisProcess(), 2) << "no team was used, so this test would show nothing";
    EXPECT_EQ(inChild([] { return ownGetNumThreads(); }), 1);
    EXPECT_EQ(inChild([] { return inChild([] { return ownGetNumThreads(); }); }), 1);
    EXPECT_EQ(inChild(addsRight), 0);
    EXPECT_EQ(inChild([] { return keslCoreSetNumThreads(2) == keslStatusBadCount ? addsRight() : 4; }), 0);
    EXPECT_EQ(inChild([] { return keslCoreSetNumThreads(1) || keslCoreSetNumThreads(0) ? 4 : ownGetNumThreads(); }), 1);
    EXPECT_EQ(addsRight(), 0); // the parent goes on
}

TEST_F(Threads, SettingAndAskingFromManyThreads)
{
    const int automatic = ownGetNumThreads();
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 10000; ++i) {
                if (t % 2) keslCoreSetNumThreads(7 + i % 2);
                const int n = ownGetNumThreads();
                wrong += n != 7 && n != 8 && n != automatic;
            }
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
