// How many threads a call may use.
#include "core/cgroup.h"
#include "core/limits.h"
#include "core/run_queue.h"
#include "keslcorex.h"
#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <omp.h>
#include <pthread.h>
#include <sched.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::atomic<int> asked{0};                // by the program; 0: automatic
std::atomic<int> bound{0};                // by the limits of the process; 0: not read yet
std::atomic<bool> hadOtherThreads{false}; // before the fork that is under way
bool teamIsLost = false;                  // written only where no second thread exists

constexpr long samplingPeriod = 5;  // milliseconds, at the least, between two looks at what else runs
std::atomic<long> sampledAt{-1000}; // milliseconds
std::atomic<int> busyWithOthers{0}; // processors, then
std::atomic<int> lastAnswer{1};     // to an automatic question

// The directory of a process's threads has a link for each, and two of its own.
bool hasOtherThreads()
{
    struct stat tasks;
    return stat("/proc/self/task", &tasks) || tasks.st_nlink > 2 + 1;
}

// The threads of a team do not live on in a child, and the GNU runtime would wait for them for ever. It never lets go of
// them either, so that a process without other threads has no team.
[[gnu::constructor]] void watchForks()
{
    pthread_atfork([] { hadOtherThreads = hasOtherThreads(); }, nullptr, [] { teamIsLost |= hadOtherThreads; });
}

// The processors that the calling thread, and so a team that it starts, may run on.
int processors()
{
    // A runtime that binds threads has tied the calling one to its own place, which says nothing about the team.
    if (omp_get_proc_bind() != omp_proc_bind_false) return omp_get_num_procs();
    cpu_set_t set[keslCoreMaxThreads / CPU_SETSIZE];
    return sched_getaffinity(0, sizeof set, set) ? omp_get_num_procs() : CPU_COUNT_S(sizeof set, set);
}

// The runtime ends a process that cannot create a thread, so there must be room for a team beside the calling thread.
int boundOnce()
{
    int n = bound.load(std::memory_order_relaxed);
    if (!n) {
        const int room = std::min(kesl::cgroupRoom(""), kesl::limitsRoom());
        n = std::min(kesl::cgroupProcessors(""), room == INT_MAX ? room : room + 1);
        bound.store(n, std::memory_order_relaxed); // twice by a race: much the same number
    }
    return n;
}

// What a program cannot change while it runs. OMP_DYNAMIC=false is how a user says that the number shall not follow the load.
int online = 1; // processors of the machine
bool followsLoad = true;
[[gnu::constructor]] void readOnce()
{
    const char* const dynamic = std::getenv("OMP_DYNAMIC");
    followsLoad = !dynamic || strcasecmp(dynamic, "false") != 0;
    online = int(sysconf(_SC_NPROCESSORS_ONLN));
}

// The processors that other work leaves to this call. A team whose members wait for each other needs all of them at once: with
// fewer, each wait lasts as long as the system lets others run, which is some milliseconds and more than most calls.
int idleProcessors()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    const long millisecond = now.tv_sec * 1000 + now.tv_nsec / 1000000;
    long last = sampledAt.load(std::memory_order_relaxed);
    if (millisecond - last >= samplingPeriod &&
        sampledAt.compare_exchange_strong(last, millisecond, std::memory_order_relaxed)) {
        // Members of the last team may still be looking for work. What runs for an instant only does not count.
        const int ours = lastAnswer.load(std::memory_order_relaxed) - 1;
        int others = kesl::otherRunnableThreads("");
        if (others > ours) others = std::min(others, kesl::otherRunnableThreads(""));
        busyWithOthers.store(std::max(0, others - ours), std::memory_order_relaxed);
    }
    return std::max(1, online - busyWithOthers.load(std::memory_order_relaxed));
}

} // namespace

extern "C" {
#pragma GCC visibility push(default)

int ownGetNumThreads(void)
{
    if (teamIsLost || omp_in_parallel()) return 1;
    if (const int n = asked.load(std::memory_order_relaxed)) return n;
    const int n = omp_get_max_threads();
    if (n < 2) return 1;
    const int most = std::max(1, std::min({n, processors(), boundOnce()}));
    if (most < 2 || !followsLoad) return most;
    const int answer = std::min(most, idleProcessors());
    lastAnswer.store(answer, std::memory_order_relaxed);
    return answer;
}

int keslCoreGetNumThreads(void) { return ownGetNumThreads(); }

KeslStatus keslCoreSetNumThreads(int numThreads)
{
    if (numThreads < 0 || numThreads > (teamIsLost ? 1 : keslCoreMaxThreads)) return keslStatusBadCount;
    asked.store(numThreads, std::memory_order_relaxed);
    return keslStatusOk;
}

#pragma GCC visibility pop
}
