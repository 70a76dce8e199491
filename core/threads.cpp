// How many threads a call may use.
#include "core/cgroup.h"
#include "keslcorex.h"
#include <algorithm>
#include <atomic>
#include <omp.h>
#include <pthread.h>
#include <sched.h>

namespace {

std::atomic<int> asked{0};  // by the program; 0: automatic
std::atomic<int> quota{0};  // of the control group; 0: not read yet
bool inForkedChild = false; // written only where no second thread exists

// The threads of a team do not live on in a child, and the GNU runtime would wait for them for ever.
[[gnu::constructor]] void watchForks()
{
    pthread_atfork(nullptr, nullptr, [] { inForkedChild = true; });
}

// The processors that the calling thread, and so a team that it starts, may run on.
int processors()
{
    // A runtime that binds threads has tied the calling one to its own place, which says nothing about the team.
    if (omp_get_proc_bind() != omp_proc_bind_false) return omp_get_num_procs();
    cpu_set_t set[keslCoreMaxThreads / CPU_SETSIZE];
    return sched_getaffinity(0, sizeof set, set) ? omp_get_num_procs() : CPU_COUNT_S(sizeof set, set);
}

int quotaOnce()
{
    int n = quota.load(std::memory_order_relaxed);
    if (!n) quota.store(n = kesl::cgroupProcessors(""), std::memory_order_relaxed); // twice by a race: the same number
    return n;
}

} // namespace

extern "C" {
#pragma GCC visibility push(default)

int ownGetNumThreads(void)
{
    if (inForkedChild || omp_in_parallel()) return 1;
    if (const int n = asked.load(std::memory_order_relaxed)) return n;
    const int n = omp_get_max_threads();
    return n < 2 ? 1 : std::max(1, std::min({n, processors(), quotaOnce()}));
}

int keslCoreGetNumThreads(void) { return ownGetNumThreads(); }

KeslStatus keslCoreSetNumThreads(int numThreads)
{
    if (numThreads < 0 || numThreads > keslCoreMaxThreads) return keslStatusBadCount;
    asked.store(numThreads, std::memory_order_relaxed);
    return keslStatusOk;
}

#pragma GCC visibility pop
}
