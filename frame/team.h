// The threaded form of a call: a contiguous slice of the objects for each thread of an OpenMP team.
#pragma once
#include "frame/call.h"

#include <algorithm>
#include <cstdint>
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

// The block that the threads of a team share out among themselves; null where it cannot be had.
template <class T> T* allocated(std::size_t threads, std::size_t each)
{
    std::size_t elements, bytes;
    if (__builtin_mul_overflow(threads, each, &elements) || __builtin_mul_overflow(elements, sizeof(T), &bytes))
        return nullptr;
    return bytes > PTRDIFF_MAX ? nullptr : static_cast<T*>(omp_alloc(bytes, omp_default_mem_alloc));
}

// The body of a wrapper.
template <class Member, class T, class Kernel, class General, class... Args>
inline KeslStatus share(Kernel kernel, General general, const Args&... args)
{
    constexpr Form F = std::max({Args::form...});
    constexpr bool hasScratch = requires { Member::scratch; };
    const int count = countOf(args...), threads = ownGetNumThreads();
    if (threads < 2 || count < threads || !(args.sliceable(count) && ...)) return serially<F>(kernel, general, args...);

    T* scratch = nullptr;
    std::size_t each = 0; // elements of scratch for a thread
    if constexpr (hasScratch) {
        each = std::apply(Member::scratch, std::tuple_cat(args.sizes()...));
        scratch = allocated<T>(std::size_t(threads), each);
        if (!scratch) return serially<F>(kernel, general, args...);
    }

    // The companion is asked again for the team, and may have changed its mind; the scratch is for `threads` only.
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
        const KeslStatus status =
            serially<F>(kernel, general, args.slice(mine.start, mine.count, scratch + std::size_t(thread) * each)...);
        if constexpr (requires { Member::canFail; }) {
#pragma omp critical(keslmx) // one for all families; an unnamed one could be held by the program around the call
            if (merged == keslStatusOk) merged = status;
        }
    }
    if constexpr (hasScratch) omp_free(scratch, omp_default_mem_alloc);
    return merged;
}

} // namespace kesl
