// The threads of a call: the only file that knows what a team is.
#include "frame/team.h"

#include <algorithm>

namespace kesl {

namespace {
struct Slice {
    int start, count;
};
// Slices of equal size in thread order, the first count % threads of them with one object more.
Slice sliceOf(int thread, int quotient, int remainder)
{
    return thread < remainder ? Slice{(quotient + 1) * thread, quotient + 1}
                              : Slice{(quotient + 1) * remainder + quotient * (thread - remainder), quotient};
}
} // namespace

KeslStatus shareOut(int count, int threads, bool canFail, RunSlice* run, const void* context)
{
    if (threads == 1) return run(context, 0, count, 0);
    // The companion is asked again for the team, and may have changed its mind; scratch is for `threads` only.
    const int team = std::clamp(ownGetNumThreads(), 1, threads);
    const unsigned control = _mm_getcsr();
    int quotient = 0, remainder = 0;
    KeslStatus merged = keslStatusOk;
#pragma omp parallel num_threads(team)
    {
#pragma omp master
        {
            quotient = count / omp_get_num_threads();
            remainder = count % omp_get_num_threads();
        }
#pragma omp barrier
        const int thread = omp_get_thread_num();
        const Slice mine = sliceOf(thread, quotient, remainder);
        const QuietArithmetic quiet(control);
        const KeslStatus status = run(context, mine.start, mine.count, thread);
        if (canFail) {
#pragma omp critical(keslmx) // one for all families; an unnamed one could be held by the program around the call
            if (merged == keslStatusOk) merged = status;
        }
    }
    return merged;
}

} // namespace kesl
