// The threaded form of a call: a contiguous slice of the objects for each thread of an OpenMP team.
#pragma once
#include "frame/call.h"

#include <algorithm>
#include <omp.h>

extern "C" int ownGetNumThreads(); // the companion library's

namespace kesl {

struct Slice {
    int start, count;
};

// Slices of equal size in thread order, the first count % threads of them with one object more.
inline Slice sliceOf(int thread, int quotient, int remainder)
{
    return thread < remainder ? Slice{(quotient + 1) * thread, quotient + 1}
                              : Slice{(quotient + 1) * remainder + quotient * (thread - remainder), quotient};
}

// The body of a wrapper.
template <class Member, class T, class Kernel, class General, class... Args>
inline KeslStatus share(Kernel kernel, General general, const Args&... args)
{
    constexpr Form F = std::max({Args::form...});
    const int count = countOf(args...), threads = ownGetNumThreads();
    if (threads < 2 || count < threads) return serially<F>(kernel, general, args...);

    T* scratch = nullptr;
    std::ptrdiff_t each = 0; // elements of scratch for a thread
    if constexpr (requires { Member::scratch; }) {
        each = measured(Member::scratch, args...);
        const std::size_t elements = unsigned(threads) * unsigned(each);
        scratch = static_cast<T*>(omp_alloc(elements * sizeof(T), omp_default_mem_alloc));
    }

    // The companion is asked again for the team, and may have changed its mind; the scratch is for `threads` only.
    const int team = std::clamp(ownGetNumThreads(), 1, threads);
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
        const KeslStatus status =
            serially<F>(kernel, general, args.slice(mine.start, mine.count, scratch + thread * each)...);
        if constexpr (requires { Member::canFail; }) {
#pragma omp critical
            if (merged == keslStatusOk) merged = status;
        }
    }
    if constexpr (requires { Member::scratch; }) omp_free(scratch, omp_default_mem_alloc);
    return merged;
}

} // namespace kesl
