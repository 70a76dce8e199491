// The threaded form of a call: a contiguous slice of the objects for each thread of an OpenMP team.
#pragma once
#include "frame/call.h"

#include <cstdint>
#include <omp.h>

extern "C" int ownGetNumThreads(); // the companion library's

namespace kesl {

// What a team does: run(context, start, count, thread) for the slice of each thread; all objects for the caller, where `threads` is 1.
// One function serves all families (team.cpp).
using RunSlice = KeslStatus(const void* context, int start, int count, int thread);
KeslStatus shareOut(int count, int threads, bool canFail, RunSlice* run, const void* context);

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
    const bool together = threads > 1 && count >= threads && (args.sliceable(count) && ...);

    T* scratch = nullptr;
    std::size_t each = 0; // elements of scratch for a thread
    if constexpr (hasScratch) {
        each = std::apply(Member::scratch, std::tuple_cat(args.sizes()...));
        if (together) scratch = allocated<T>(std::size_t(threads), each);
        if (!scratch) return serially<F>(kernel, general, args...);
    }

    const auto slice = [&](int start, int objects, int thread) {
        return serially<F>(kernel, general, args.slice(start, objects, scratch + std::size_t(thread) * each)...);
    };
    const auto run = [](const void* context, int start, int objects, int thread) {
        return (*static_cast<decltype(slice)*>(context))(start, objects, thread);
    };
    constexpr bool canFail = requires { Member::canFail; };
    const KeslStatus merged = shareOut(count, together ? threads : 1, canFail, run, &slice);
    if constexpr (hasScratch) omp_free(scratch, omp_default_mem_alloc);
    return merged;
}

} // namespace kesl
